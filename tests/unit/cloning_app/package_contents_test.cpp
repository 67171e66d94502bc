#include "cloning_app/package/package_contents.h"

#include <fcntl.h>
#include <gmock/gmock.h>

#include "cloning_app/package/small_file.h"
#include "tests/unit/cloning_app/test_folder.h"

namespace vxclone {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

class PackageContentsTest : public testing::Test {
 protected:
    PackageContents read(Place place = Place::Television) {
        auto contents = readContents({descriptor_.get(), folder_.path().string(), place});
        EXPECT_TRUE(contents) << contents.error().sentence;
        return contents.value_or(PackageContents{});
    }

    /// The list must change when the change is made.
    void expectSeen(const std::function<void()>& change) {
        const std::string before = read().list;
        change();
        EXPECT_NE(read().list, before);
    }

    TestFolder folder_;
    const Descriptor descriptor_{open(folder_.path().c_str(), O_RDONLY | O_DIRECTORY)};
};

TEST_F(PackageContentsTest, emptyPackageHoldsNothing) {
    EXPECT_THAT(read().files, IsEmpty());
    EXPECT_EQ(read().list, "");
}

TEST_F(PackageContentsTest, filesAreSortedWithNestedFoldersAndStrangeNames) {
    const std::vector<std::string> names = {"a/deep/er/file", "a.txt", "quote\"'.txt",
                                            "line\nend",      "z",     "vconf/Vconf.json"};
    std::vector<std::string> expected;
    for (const std::string& name : names) {
        writeFile(folder_ / name, name);
        expected.push_back((folder_ / name).string());
    }
    std::sort(expected.begin(), expected.end());
    EXPECT_EQ(read().files, expected);
}

TEST_F(PackageContentsTest, listIsALineForEachEntryWithDigestAndSize) {
    writeFile(folder_ / "sub/abc", "abc");
    writeFile(folder_ / "a\nb\\", "");
    EXPECT_EQ(read().list,
              "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855 0 a\\x0ab\\x5c\n"
              "folder - sub\n"
              "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad 3 sub/abc\n");
}

TEST_F(PackageContentsTest, sealAndSidecarsAreLeftOutOnBothSides) {
    writeFile(folder_ / "a", "x");
    const auto before = read();
    for (const char* const name : {"validate.txt", ".DS_Store", "._a", "System Volume Information/sub/x"}) {
        writeFile(folder_ / name, "x");
    }
    for (const Place place : {Place::Television, Place::Stick}) {
        EXPECT_EQ(read(place).files, before.files);
        EXPECT_EQ(read(place).list, before.list);
    }
}

TEST_F(PackageContentsTest, fileAfterASidecarFolderIsNotLeftOut) {
    writeFile(folder_ / "System Volume Information/sub/x", "x");
    writeFile(folder_ / "after", "x");
    EXPECT_THAT(read().files, ElementsAre((folder_ / "after").string()));
}

TEST_F(PackageContentsTest, sealsNameInASubfolderIsAFileLikeAnyOther) {
    writeFile(folder_ / "sub/validate.txt", "x");
    writeFile(folder_ / "sub/PackageContents.txt", "x");
    EXPECT_EQ(read().files.size(), 2U);
    EXPECT_THAT(read().list, HasSubstr("sub/validate.txt"));
    EXPECT_THAT(read().list, HasSubstr("sub/PackageContents.txt"));
}

TEST_F(PackageContentsTest, listItselfIsAmongTheFilesAndNotInItself) {
    writeFile(folder_ / "PackageContents.txt", "x");
    EXPECT_THAT(read().files, ElementsAre((folder_ / "PackageContents.txt").string()));
    EXPECT_EQ(read().list, "");
}

TEST_F(PackageContentsTest, everyChangeOfAPackageIsSeen) {
    writeFile(folder_ / "a", "one");
    writeFile(folder_ / "b", "two");
    expectSeen([this] { writeFile(folder_ / "empty", ""); });
    expectSeen([this] { std::filesystem::rename(folder_ / "empty", folder_ / "other"); });
    expectSeen([this] { std::filesystem::create_directory(folder_ / "folder"); });
    expectSeen([this] { writeFile(folder_ / "zero", std::string(1, '\0')); });
    expectSeen([this] { writeFile(folder_ / "a", "onf"); });
    expectSeen([this] {
        writeFile(folder_ / "a", "two");
        writeFile(folder_ / "b", "onf");
    });
    expectSeen([this] { std::filesystem::remove(folder_ / "b"); });
}

TEST_F(PackageContentsTest, linkInThePackageIsRefused) {
    std::filesystem::create_symlink("/etc/passwd", folder_ / "link");
    const auto contents = readContents({descriptor_.get(), folder_.path().string(), Place::Television});
    ASSERT_FALSE(contents);
    EXPECT_EQ(contents.error().code, ErrorCode::UnsafeEntry);
}

TEST(PackageContents, differingEntriesAreNamedOnce) {
    EXPECT_THAT(differingEntries("d1 1 a\nd2 2 b c\nfolder - f\n", "d1 1 a\nd3 2 b c\nd4 1 new\n"),
                ElementsAre("b c", "f", "new"));
    EXPECT_THAT(differingEntries("same\n", "same\n"), IsEmpty());
    EXPECT_THAT(differingEntries("\n\nx\none word\n", ""), ElementsAre("", "one word", "x"));
}

TEST_F(PackageContentsTest, smallFileIsReadUpToTheMost) {
    const Tree tree{descriptor_.get(), folder_.path().string(), Place::Television};
    EXPECT_FALSE(readSmallFile(tree, "none", 10).value());
    writeFile(folder_ / "file", "0123456789");
    EXPECT_EQ(readSmallFile(tree, "file", 4).value(), "0123");
    std::filesystem::create_directory(folder_ / "folder");
    EXPECT_EQ(readSmallFile(tree, "folder", 4).error().code, ErrorCode::UnsafeEntry);
    std::filesystem::create_symlink(folder_ / "file", folder_ / "link");
    EXPECT_FALSE(readSmallFile(tree, "link", 4));
}

TEST_F(PackageContentsTest, smallFileTakesTheNameOfALinkAndNotItsTarget) {
    const Tree tree{descriptor_.get(), folder_.path().string(), Place::Television};
    writeFile(folder_ / "target", "kept");
    std::filesystem::create_symlink(folder_ / "target", folder_ / "file");
    ASSERT_TRUE(writeSmallFile(tree, "file", "new"));
    EXPECT_EQ(readFile(folder_ / "target"), "kept");
    EXPECT_EQ(readFile(folder_ / "file"), "new");
}

}  // namespace
}  // namespace vxclone
