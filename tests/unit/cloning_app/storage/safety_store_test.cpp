#include "cloning_app/storage/safety_store.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "tests/unit/cloning_app/test_folder.h"

namespace vxclone {
namespace {

class SafetyStoreTest : public testing::Test {
 protected:
    Tree root() { return {root_.get(), clone_.string(), Place::Television}; }

    TestFolder folder_;
    const std::filesystem::path data_ = folder_ / "data";
    const std::filesystem::path clone_ = data_ / "Clone";
    const bool made_ = std::filesystem::create_directories(clone_);
    const Descriptor root_{open(clone_.c_str(), O_RDONLY | O_DIRECTORY)};
    const Result<SafetyStore> store_ = SafetyStore::open(data_);
};

TEST_F(SafetyStoreTest, keptPackageReplacesTheOneBeforeAndLeavesTheCloneFolderEmpty) {
    EXPECT_FALSE(store_->openSafety()->valid());
    for (const char* const content : {"one", "two"}) {
        writeFile(clone_ / "vconf/Vconf.json", content);
        ASSERT_TRUE(store_->keep(root()));
        EXPECT_TRUE(std::filesystem::is_empty(clone_));
        EXPECT_EQ(readFile(data_ / "Safety/vconf/Vconf.json"), content);
    }
    EXPECT_TRUE(store_->openSafety()->valid());
    EXPECT_FALSE(std::filesystem::exists(data_ / "Safety.old"));
    EXPECT_EQ(std::filesystem::status(data_ / "Safety").permissions(), std::filesystem::perms::owner_all);
}

TEST_F(SafetyStoreTest, whatWasSetAsideComesBackInPlaceOfWhatIsThere) {
    writeFile(clone_ / "a/b", "package");
    ASSERT_TRUE(store_->setAside(root()));
    EXPECT_TRUE(std::filesystem::is_empty(clone_));
    writeFile(clone_ / "of-the-library", "x");
    ASSERT_TRUE(store_->bringBack(root()));
    EXPECT_EQ(contentOf(data_), (std::map<std::string, std::string>{
                                    {"Clone", "/"}, {"Clone/a", "/"}, {"Clone/a/b", "package"}}));
}

TEST_F(SafetyStoreTest, leftoversGoAndASafetyBackupThatWasBeingReplacedComesBack) {
    writeFile(data_ / "Safety.old/a", "old");
    writeFile(data_ / "Safety.new/a", "half");
    writeFile(data_ / "Clone.aside/a", "staged");
    removeLeftovers(data_);
    EXPECT_EQ(contentOf(data_),
              (std::map<std::string, std::string>{{"Clone", "/"}, {"Safety", "/"}, {"Safety/a", "old"}}));
}

TEST_F(SafetyStoreTest, wholeSafetyBackupStaysWhenLeftoversGo) {
    writeFile(data_ / "Safety/a", "new");
    writeFile(data_ / "Safety.old/a", "old");
    removeLeftovers(data_);
    EXPECT_EQ(readFile(data_ / "Safety/a"), "new");
    EXPECT_FALSE(std::filesystem::exists(data_ / "Safety.old"));
}

TEST_F(SafetyStoreTest, linkInThePlaceOfTheSafetyBackupIsRefused) {
    std::filesystem::create_directory_symlink("/etc", data_ / "Safety");
    EXPECT_FALSE(store_->openSafety());
}

}  // namespace
}  // namespace vxclone
