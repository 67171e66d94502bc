#include "cloning_app/storage/kept_content.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "cloning_app/base/tree_walk.h"
#include "tests/unit/cloning_app/test_folder.h"

namespace vxclone {
namespace {

using Content = std::map<std::string, std::string>;

/// A clone folder with two entries.
class KeptContentTest : public testing::Test {
 protected:
    KeptContentTest() {
        writeFile(clone_ / "a/b", "1");
        writeFile(clone_ / "c", "2");
    }

    Tree root() { return {root_.get(), clone_.string(), Place::Television}; }
    bool isAside() { return isContentAside(data_).value(); }

    TestFolder folder_;
    const std::filesystem::path data_ = folder_ / "data";
    const std::filesystem::path clone_ = data_ / "Clone";
    const bool made_ = std::filesystem::create_directories(clone_);
    const Descriptor root_{open(clone_.c_str(), O_RDONLY | O_DIRECTORY)};
    const Content whole_ = {{"Clone", "/"}, {"Clone/a", "/"}, {"Clone/a/b", "1"}, {"Clone/c", "2"}};
};

TEST_F(KeptContentTest, whatIsSetAsideLeavesAnEmptyFolderAndComesBackInPlaceOfWhatIsThereThen) {
    ASSERT_TRUE(setContentAside(data_, root()));
    EXPECT_TRUE(isAside());
    EXPECT_TRUE(std::filesystem::is_empty(clone_));
    EXPECT_EQ(sizeOfContentAside(data_).bytes, 2U);
    writeFile(clone_ / "a", "of the library");
    writeFile(clone_ / "more/still", "of the library");
    EXPECT_TRUE(putContentBack(data_, root()).value());
    EXPECT_EQ(contentOf(data_), whole_);
    EXPECT_FALSE(isAside());
}

TEST_F(KeptContentTest, emptyFolderComesBackEmpty) {
    std::filesystem::remove_all(clone_ / "a");
    std::filesystem::remove(clone_ / "c");
    ASSERT_TRUE(setContentAside(data_, root()));
    writeFile(clone_ / "of-the-library", "x");
    EXPECT_TRUE(putContentBack(data_, root()).value());
    EXPECT_EQ(contentOf(data_), (Content{{"Clone", "/"}}));
}

TEST_F(KeptContentTest, nothingAsideChangesNothing) {
    EXPECT_FALSE(putContentBack(data_, root()).value());
    EXPECT_EQ(contentOf(data_), whole_);
    EXPECT_EQ(sizeOfContentAside(data_).entries, 0U);
}

TEST_F(KeptContentTest, settingAsideThatDiedHalfWayIsPutRight) {
    std::filesystem::create_directory(data_ / "Clone.moving");
    std::filesystem::rename(clone_ / "a", data_ / "Clone.moving/a");
    EXPECT_TRUE(isAside());
    EXPECT_TRUE(putContentBack(data_, root()).value());
    EXPECT_EQ(contentOf(data_), whole_);
}

TEST_F(KeptContentTest, puttingBackThatDiedHalfWayIsPutRight) {
    ASSERT_TRUE(setContentAside(data_, root()));
    std::filesystem::rename(data_ / "Clone.kept", data_ / "Clone.moving");
    std::filesystem::rename(data_ / "Clone.moving/c", clone_ / "c");
    EXPECT_TRUE(putContentBack(data_, root()).value());
    EXPECT_EQ(contentOf(data_), whole_);
}

TEST_F(KeptContentTest, whatAnEarlierCallerLeftAsideIsPutBackBefore) {
    ASSERT_TRUE(setContentAside(data_, root()));
    writeFile(clone_ / "of-the-library", "x");
    ASSERT_TRUE(setContentAside(data_, root()));
    EXPECT_TRUE(putContentBack(data_, root()).value());
    EXPECT_EQ(contentOf(data_), whole_);
}

TEST_F(KeptContentTest, folderThatCannotBeReadIsAnErrorAndNotAnEmptyOne) {
    const auto aside = isContentAside(folder_ / "none");
    ASSERT_FALSE(aside);
    EXPECT_EQ(aside.error().code, ErrorCode::TelevisionIo);
    EXPECT_FALSE(setContentAside(folder_ / "none", root()));
    EXPECT_EQ(contentOf(data_), whole_);
}

TEST_F(KeptContentTest, nameThatIsTakenKeepsEverythingWhereItIs) {
    writeFile(data_ / "Clone.moving", "a file");
    const auto aside = setContentAside(data_, root());
    ASSERT_FALSE(aside);
    EXPECT_EQ(readFile(clone_ / "a/b"), "1");
    EXPECT_EQ(readFile(clone_ / "c"), "2");
}

}  // namespace
}  // namespace vxclone
