#include "common/tree_removal.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "tests/unit/cloning_app/own_mounts.h"
#include "tests/unit/cloning_app/test_folder.h"

namespace vxcommon {
namespace {

namespace fs = std::filesystem;

constexpr const char* kNotAllowed = "mounting is not allowed here";

class TreeRemovalTest : public testing::Test {
 protected:
    ~TreeRemovalTest() override { close(folder_); }

    /// A descriptor keeps the mounts of the time when it was opened.
    void openAnew() {
        close(folder_);
        folder_ = openPlace();
    }
    int openPlace() const { return open(place_.path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); }

    bool isThere(const std::string& name) const { return fs::exists(fs::symlink_status(place_ / name)); }

    /// Expects that the removal was stopped by a mount at the path.
    static void expectRefusalAt(const std::string& path, const Removal& removal) {
        ASSERT_FALSE(removal);
        EXPECT_EQ(removal.error().path, path);
        EXPECT_EQ(removal.error().reason, EXDEV);
        EXPECT_EQ(removal.error().text(), "another file system is mounted there");
    }

    TestFolder place_;
    int folder_ = openPlace();
};

TEST_F(TreeRemovalTest, removesFilesFoldersAndLinksNotWhatLinksLeadTo) {
    writeFile(place_ / "kept/file", "x");
    writeFile(place_ / "tree/a/b/c", "x");
    fs::create_directory_symlink(place_ / "kept", place_ / "tree/a/link");
    fs::create_symlink("nowhere", place_ / "tree/dangling");
    ASSERT_EQ(mkfifo((place_ / "tree/fifo").c_str(), 0600), 0);
    EXPECT_TRUE(removeTree(folder_, "tree"));
    EXPECT_FALSE(isThere("tree"));
    EXPECT_TRUE(isThere("kept/file"));
}

TEST_F(TreeRemovalTest, removesAFileALinkAndNothing) {
    writeFile(place_ / "file", "x");
    fs::create_directory_symlink(place_.path(), place_ / "link");
    for (const char* const name : {"file", "link", "none"}) {
        EXPECT_TRUE(removeTree(folder_, name)) << name;
    }
    EXPECT_TRUE(fs::is_empty(place_.path()));
}

TEST_F(TreeRemovalTest, removesWhatHasAPathAndWhatLiesInAFolder) {
    writeFile(place_ / "tree/a", "x");
    writeFile(place_ / "other/b", "x");
    EXPECT_TRUE(removeTree(place_ / "tree/"));
    EXPECT_TRUE(removeTree(place_ / "none/below"));
    EXPECT_TRUE(removeContents(folder_));
    EXPECT_TRUE(fs::is_empty(place_.path()));
}

TEST_F(TreeRemovalTest, removesATreeThatIsDeeperThanAnyPathIsLong) {
    constexpr int kDepth = 500;
    const std::string name(20, 'd');
    int at = dup(folder_);
    for (int depth = 0; depth < kDepth; ++depth) {
        ASSERT_EQ(mkdirat(at, name.c_str(), 0700), 0);
        const int below = openat(at, name.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        close(at);
        at = below;
    }
    close(at);
    EXPECT_TRUE(removeTree(folder_, name));
    EXPECT_TRUE(fs::is_empty(place_.path()));
}

TEST_F(TreeRemovalTest, pathThatNamesNoEntryIsRefused) {
    for (const char* const path : {"", "/", ".", "..", "a/.."}) {
        const Removal removal = removeTree(fs::path(path));
        ASSERT_FALSE(removal) << path;
        EXPECT_EQ(removal.error().reason, EINVAL) << path;
    }
}

TEST_F(TreeRemovalTest, folderThatIsNotOpenIsAnErrorThatNamesTheEntry) {
    const Removal removal = removeTree(-1, "tree");
    ASSERT_FALSE(removal);
    EXPECT_EQ(removal.error().path, "tree");
    EXPECT_EQ(removal.error().reason, EBADF);
    EXPECT_EQ(removal.error().text(), "Bad file descriptor");
}

TEST_F(TreeRemovalTest, mountedFileSystemIsNamedBeforeAnythingIsRemoved) {
    writeFile(place_ / "tree/a/mounted/x", "x");
    writeFile(place_ / "tree/z", "x");
    const bool allowed = withOwnMounts([this] {
        openAnew();
        const fs::path mounted = place_ / "tree/a/mounted";
        ASSERT_EQ(mount("none", mounted.c_str(), "tmpfs", 0, "size=64k"), 0);
        writeFile(mounted / "theirs", "x");
        expectRefusalAt("tree/a/mounted", findMountIn(folder_, "tree"));
        expectRefusalAt("tree/a/mounted", removeTree(folder_, "tree"));
        expectRefusalAt("tree/a/mounted", removeContents(folder_));
        expectRefusalAt("tree/a/mounted", findMountInContents(folder_));
        EXPECT_TRUE(isThere("tree/a/mounted/theirs"));
        EXPECT_TRUE(isThere("tree/z"));
    });
    if (!allowed) {
        GTEST_SKIP() << kNotAllowed;
    }
    EXPECT_TRUE(removeTree(place_ / "tree"));
}

TEST_F(TreeRemovalTest, otherPartOfTheSameFileSystemIsNamedToo) {
    writeFile(place_ / "theirs/file", "x");
    fs::create_directories(place_ / "tree/folder");
    writeFile(place_ / "tree/file", "");
    const bool allowed = withOwnMounts([this] {
        openAnew();
        const auto bind = [this](const std::string& from, const std::string& to) {
            return mount((place_ / from).c_str(), (place_ / to).c_str(), nullptr, MS_BIND, nullptr);
        };
        ASSERT_EQ(bind("theirs", "tree/folder"), 0);
        expectRefusalAt("tree/folder", removeTree(folder_, "tree"));
        expectRefusalAt("tree/folder", removeTree(place_ / "tree"));
        ASSERT_EQ(umount((place_ / "tree/folder").c_str()), 0);
        ASSERT_EQ(bind("theirs/file", "tree/file"), 0);
        expectRefusalAt("tree/file", removeTree(folder_, "tree"));
        ASSERT_EQ(umount((place_ / "tree/file").c_str()), 0);
        ASSERT_EQ(bind("theirs", "tree"), 0);
        expectRefusalAt("tree", removeTree(folder_, "tree"));
    });
    if (!allowed) {
        GTEST_SKIP() << kNotAllowed;
    }
    EXPECT_TRUE(isThere("theirs/file"));
    EXPECT_TRUE(isThere("tree/file"));
}

}  // namespace
}  // namespace vxcommon
