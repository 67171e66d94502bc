#include "virtual_tv/factory/destruction.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <unistd.h>

#include "tests/unit/virtual_tv/test_television.h"

namespace vxtv {
namespace {

namespace fs = std::filesystem;

class DestructionTest : public testing::Test {
 protected:
    ErrorCode refusalOf(const fs::path& place) {
        const Result<void> destroyed = destroyTelevision(place);
        EXPECT_FALSE(destroyed);
        EXPECT_TRUE(fs::exists(place));
        return destroyed ? ErrorCode::CannotRun : destroyed.error().code;
    }

    test::TestFolder folder_;
    fs::path place_ = folder_.path() / "tv";
};

TEST_F(DestructionTest, destroyRemovesTheTelevisionAndFollowsNoLink) {
    test::makeTelevision(place_);
    fs::create_directory(folder_.path() / "mine");
    test::writeFile(folder_.path() / "mine" / "file", "kept");
    fs::create_directory_symlink(folder_.path() / "mine", place_ / "opt" / "way-out");
    ASSERT_TRUE(destroyTelevision(place_));
    EXPECT_FALSE(fs::exists(place_));
    EXPECT_EQ("kept", test::readFile(folder_.path() / "mine" / "file"));
    EXPECT_EQ(1, std::distance(fs::directory_iterator(folder_.path()), fs::directory_iterator()));
}

TEST_F(DestructionTest, otherFolderIsRefused) {
    fs::create_directory(place_);
    EXPECT_EQ(ErrorCode::NotATelevision, refusalOf(place_));
}

TEST_F(DestructionTest, linkToATelevisionIsRefused) {
    test::makeTelevision(place_);
    fs::create_directory_symlink(place_, folder_.path() / "link");
    EXPECT_EQ(ErrorCode::NotATelevision, refusalOf(folder_.path() / "link"));
    EXPECT_TRUE(Television::open(place_));
}

TEST_F(DestructionTest, televisionWithASessionIsRefused) {
    test::makeTelevision(place_);
    const int lock = open(Folder(place_).sessionLock().c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    ASSERT_EQ(0, flock(lock, LOCK_SH | LOCK_NB));
    EXPECT_EQ(ErrorCode::Busy, refusalOf(place_));
    EXPECT_TRUE(Television::open(place_));
    close(lock);
    EXPECT_TRUE(destroyTelevision(place_));
}

TEST_F(DestructionTest, unrecognisableTelevisionIsRefused) {
    test::makeTelevision(place_);
    test::writeFile(place_ / "tv.db", "x");
    EXPECT_EQ(ErrorCode::NotATelevision, refusalOf(place_));
}

TEST_F(DestructionTest, damagedTelevisionThatSaysWhoseItIsCanBeDestroyed) {
    test::makeTelevision(place_);
    fs::resize_file(place_ / "tv.db", 200);
    EXPECT_TRUE(destroyTelevision(place_));
}

}  // namespace
}  // namespace vxtv
