#include "cloning_app/package/package_contents.h"

#include <fcntl.h>
#include <gmock/gmock.h>

#include "cloning_app/base/small_file.h"
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

    /// The entries, one on each line.
    std::string list(Place place = Place::Television) {
        std::string lines;
        for (const PackageEntry& entry : read(place).entries) {
            lines += entry.folder ? "folder " : entry.digest + " " + std::to_string(entry.bytes) + " ";
            lines += entry.path + "\n";
        }
        return lines;
    }

    /// Expects that the change is reported as differences.
    void expectSeen(const std::function<void()>& change, const std::vector<std::string>& paths) {
        const auto before = read().entries;
        change();
        std::vector<std::string> found;
        for (const EntryDifference& difference : differencesOf(before, read().entries)) {
            found.push_back(difference.path);
        }
        EXPECT_EQ(found, paths);
    }

    TestFolder folder_;
    const Descriptor descriptor_{open(folder_.path().c_str(), O_RDONLY | O_DIRECTORY)};
};

TEST_F(PackageContentsTest, emptyPackageHoldsNothing) {
    EXPECT_THAT(read().files, IsEmpty());
    EXPECT_EQ(list(), "");
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
    EXPECT_EQ(list(),
              "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855 0 a\nb\\\n"
              "folder sub\n"
              "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad 3 sub/abc\n");
}

TEST_F(PackageContentsTest, sealAndSidecarsAreLeftOutOnBothSides) {
    writeFile(folder_ / "a", "x");
    const auto files = read().files;
    const auto before = list();
    for (const char* const name : {"validate.txt", ".DS_Store", "._a", "System Volume Information/sub/x"}) {
        writeFile(folder_ / name, "x");
    }
    for (const Place place : {Place::Television, Place::Stick}) {
        EXPECT_EQ(read(place).files, files);
        EXPECT_EQ(list(place), before);
    }
}

TEST_F(PackageContentsTest, fileAfterASidecarFolderIsNotLeftOut) {
    writeFile(folder_ / "System Volume Information/sub/x", "x");
    writeFile(folder_ / "after", "x");
    EXPECT_THAT(read().files, ElementsAre((folder_ / "after").string()));
}

TEST_F(PackageContentsTest, sealsNameInASubfolderIsAFileLikeAnyOther) {
    writeFile(folder_ / "sub/validate.txt", "x");
    writeFile(folder_ / "sub/manifest.json", "x");
    EXPECT_EQ(read().files.size(), 2U);
    EXPECT_THAT(list(), HasSubstr("sub/validate.txt"));
    EXPECT_THAT(list(), HasSubstr("sub/manifest.json"));
}

TEST_F(PackageContentsTest, manifestIsAmongTheFilesAndNotAmongItsEntries) {
    writeFile(folder_ / "manifest.json", "x");
    EXPECT_THAT(read().files, ElementsAre((folder_ / "manifest.json").string()));
    EXPECT_EQ(list(), "");
}

TEST_F(PackageContentsTest, everyChangeOfAPackageIsSeen) {
    writeFile(folder_ / "a", "one");
    writeFile(folder_ / "b", "two");
    expectSeen([this] { writeFile(folder_ / "empty", ""); }, {"empty"});
    expectSeen([this] { std::filesystem::rename(folder_ / "empty", folder_ / "other"); }, {"empty", "other"});
    expectSeen([this] { std::filesystem::create_directory(folder_ / "folder"); }, {"folder"});
    expectSeen([this] { writeFile(folder_ / "zero", std::string(1, '\0')); }, {"zero"});
    expectSeen([this] { writeFile(folder_ / "a", "onf"); }, {"a"});
    expectSeen(
        [this] {
            writeFile(folder_ / "a", "two");
            writeFile(folder_ / "b", "onf");
        },
        {"a", "b"});
    expectSeen([this] { std::filesystem::remove(folder_ / "b"); }, {"b"});
    expectSeen([this] { writeFile(folder_ / "folder/a", "x"); }, {"folder/a"});
    expectSeen(
        [this] {
            std::filesystem::remove(folder_ / "a");
            std::filesystem::create_directory(folder_ / "a");
        },
        {"a"});
}

TEST_F(PackageContentsTest, differencesSayHow) {
    using Kind = EntryDifference::Kind;
    const std::vector<PackageEntry> wanted = {{"a", false, 1, "d"}, {"b", true}, {"c", false, 1, "d"}};
    const std::vector<PackageEntry> found = {{"a", false, 1, "e"}, {"c", false, 1, "d"}, {"d", true}};
    const auto differences = differencesOf(wanted, found);
    ASSERT_EQ(differences.size(), 3U);
    EXPECT_EQ(differences[0].kind, Kind::Altered);
    EXPECT_EQ(differences[1].kind, Kind::Missing);
    EXPECT_EQ(differences[2].kind, Kind::Added);
    EXPECT_TRUE(differencesOf(wanted, wanted).empty());
}

TEST_F(PackageContentsTest, entriesAreInTheOrderOfTheirPaths) {
    for (const char* const name : {"a/b", "a.txt", "a0"}) {
        writeFile(folder_ / name, "x");
    }
    std::vector<std::string> paths;
    for (const PackageEntry& entry : read().entries) {
        paths.push_back(entry.path);
    }
    EXPECT_THAT(paths, ElementsAre("a", "a.txt", "a/b", "a0"));
}

TEST_F(PackageContentsTest, withoutDigestsNoFileIsRead) {
    writeFile(folder_ / "a", "abc");
    const auto contents =
        readContents({descriptor_.get(), folder_.path().string(), Place::Television}, Digests::None);
    ASSERT_TRUE(contents);
    EXPECT_EQ(contents->entries.at(0).bytes, 3U);
    EXPECT_EQ(contents->entries.at(0).digest, "");
}

TEST_F(PackageContentsTest, linkInThePackageIsRefused) {
    std::filesystem::create_symlink("/etc/passwd", folder_ / "link");
    const auto contents = readContents({descriptor_.get(), folder_.path().string(), Place::Television});
    ASSERT_FALSE(contents);
    EXPECT_EQ(contents.error().code, ErrorCode::UnsafeEntry);
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
