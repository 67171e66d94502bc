// The clone directory and the file operations.

#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>

#include "engine_test.h"

namespace vxtest {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

class DirectoryTest : public EngineTest {
 protected:
    static unsigned modeOf(const fs::path& path) {
        struct stat status {};
        EXPECT_EQ(stat(path.c_str(), &status), 0) << path;
        return status.st_mode & 07777U;
    }
};

/// While it exists, no file can be opened, as if all descriptors were used.
class NoDescriptors {
 public:
    NoDescriptors() {
        getrlimit(RLIMIT_NOFILE, &before_);
        const rlimit none = {0, before_.rlim_max};
        setrlimit(RLIMIT_NOFILE, &none);
    }
    ~NoDescriptors() { setrlimit(RLIMIT_NOFILE, &before_); }
    NoDescriptors(const NoDescriptors&) = delete;
    NoDescriptors& operator=(const NoDescriptors&) = delete;

 private:
    rlimit before_{};
};

/// A file system mounted at the path, which therefore cannot be removed.
class MountedAt {
 public:
    explicit MountedAt(const fs::path& path) : path_(path.string()) {
        fs::create_directories(path);
        EXPECT_EQ(mount("none", path_.c_str(), "tmpfs", 0, nullptr), 0);
    }
    ~MountedAt() { umount(path_.c_str()); }
    MountedAt(const MountedAt&) = delete;
    MountedAt& operator=(const MountedAt&) = delete;

 private:
    std::string path_;
};

TEST_F(DirectoryTest, deleteRemovesTheWholeTree) {
    fs::create_directories(work("tree/deep"));
    writeFile(work("tree/deep/file"), "x");
    engine.m_DeleteDirectory("/tmp/area/tree");
    EXPECT_FALSE(fs::exists(work("tree")));
    EXPECT_THAT(tv.transcript(),
                ElementsAre("E/35 m_DeleteDirectory: Remove - /tmp/area/tree",
                            "E/35 m_DeleteDirectory: Successfully removed [/tmp/area/tree]"));
}

TEST_F(DirectoryTest, deleteOfAPathWithTrailingSlashRemovesIt) {
    fs::create_directories(work("tree"));
    writeFile(work("tree/file"), "x");
    engine.m_DeleteDirectory("/tmp/area/tree/");
    EXPECT_FALSE(fs::exists(work("tree")));
}

TEST_F(DirectoryTest, deleteOfAMissingPathIsASuccess) {
    engine.m_DeleteDirectory("/tmp/area/missing");
    EXPECT_THAT(tv.messages(),
                ElementsAre("Remove - /tmp/area/missing", "Successfully removed [/tmp/area/missing]"));
}

TEST_F(DirectoryTest, deleteOfASymbolicLinkLeavesItsTarget) {
    fs::create_directories(work("target"));
    writeFile(work("target/file"), "x");
    fs::create_symlink(work("target"), work("link"));
    engine.m_DeleteDirectory("/tmp/area/link");
    EXPECT_FALSE(fs::is_symlink(work("link")));
    EXPECT_EQ(readFile(work("target/file")), "x");
}

TEST_F(DirectoryTest, deleteThatFailsSaysNothingMore) {
    const MountedAt busy(work("tree/busy"));
    engine.m_DeleteDirectory("/tmp/area/tree");
    EXPECT_THAT(tv.messages(), ElementsAre("Remove - /tmp/area/tree"));
    EXPECT_TRUE(fs::exists(work("tree")));
}

TEST_F(DirectoryTest, existsForAFileIsTrue) {
    writeFile(work("file"), "");
    EXPECT_TRUE(engine.m_IsDataFileExist("/tmp/area/file"));
    EXPECT_THAT(tv.transcript(),
                ElementsAre("E/35 m_IsDataFileExist: IsDataFileExist strPath.c_str() /tmp/area/file\n"));
}

TEST_F(DirectoryTest, existsForADirectoryIsTrue) {
    fs::create_directories(work("logo"));
    EXPECT_TRUE(engine.m_IsDataFileExist("/tmp/area/logo"));
    EXPECT_TRUE(engine.m_IsDataFileExist("/tmp/area/logo/"));
}

TEST_F(DirectoryTest, existsForAMissingPathIsFalse) {
    EXPECT_FALSE(engine.m_IsDataFileExist("/tmp/area/missing"));
    EXPECT_EQ(tv.messages().size(), 1U);
}

TEST_F(DirectoryTest, existsForASymbolicLinkToAFileIsFalse) {
    writeFile(work("file"), "");
    fs::create_symlink(work("file"), work("link"));
    EXPECT_FALSE(engine.m_IsDataFileExist("/tmp/area/link"));
    EXPECT_THAT(tv.transcript(),
                ElementsAre("E/35 m_IsDataFileExist: IsDataFileExist strPath.c_str() /tmp/area/link\n",
                            "E/35 m_IsDataFileExist: /tmp/area/link is symbolic link"));
}

TEST_F(DirectoryTest, copyTakesTheFilesAndPassesOverADirectory) {
    fs::create_directories(work("src/sub"));
    fs::create_directories(work("dst"));
    writeFile(work("src/a"), "one");
    writeFile(work("src/b"), "two");
    writeFile(work("src/sub/c"), "three");
    EXPECT_TRUE(engine.m_CopyDirectory("/tmp/area/src", "/tmp/area/dst"));
    EXPECT_EQ(readFile(work("dst/a")), "one");
    EXPECT_EQ(readFile(work("dst/b")), "two");
    EXPECT_FALSE(fs::exists(work("dst/sub")));
    EXPECT_THAT(tv.transcript(), ElementsAre("E/35 m_CopyDirectory: src = /tmp/area/src, dst = /tmp/area/dst",
                                             "E/35 m_CopyDirectory: Directories Checked",
                                             "E/35 m_CopyDirectory: -----------file copying------------",
                                             "E/35 m_CopyDirectory: -----------file copying------------",
                                             "E/35 m_CopyDirectory: -----------file copying------------",
                                             "E/35 m_CopyDirectory: -----------reached end------------"));
}

TEST_F(DirectoryTest, copyOfAnEmptyDirectoryReachesTheEnd) {
    fs::create_directories(work("src"));
    fs::create_directories(work("dst"));
    EXPECT_TRUE(engine.m_CopyDirectory("/tmp/area/src/", "/tmp/area/dst/"));
    EXPECT_THAT(tv.messages(), ElementsAre("src = /tmp/area/src/, dst = /tmp/area/dst/",
                                           "Directories Checked", "-----------reached end------------"));
}

TEST_F(DirectoryTest, copyOverAnExistingFileReplacesIt) {
    fs::create_directories(work("src"));
    fs::create_directories(work("dst"));
    writeFile(work("src/a"), "new");
    writeFile(work("dst/a"), "old and longer");
    writeFile(work("dst/other"), "kept");
    EXPECT_TRUE(engine.m_CopyDirectory("/tmp/area/src", "/tmp/area/dst"));
    EXPECT_EQ(readFile(work("dst/a")), "new");
    EXPECT_EQ(readFile(work("dst/other")), "kept");
}

TEST_F(DirectoryTest, copyOfALinkToAFileMakesAFile) {
    fs::create_directories(work("src"));
    fs::create_directories(work("dst"));
    writeFile(work("target"), "content");
    fs::create_symlink(work("target"), work("src/link"));
    EXPECT_TRUE(engine.m_CopyDirectory("/tmp/area/src", "/tmp/area/dst"));
    EXPECT_FALSE(fs::is_symlink(work("dst/link")));
    EXPECT_EQ(readFile(work("dst/link")), "content");
}

TEST_F(DirectoryTest, copyPassesOverWhatIsNoFileAndDoesNotWait) {
    fs::create_directories(work("src"));
    fs::create_directories(work("dst"));
    ASSERT_EQ(mkfifo(work("src/fifo").c_str(), 0600), 0);
    fs::create_symlink(work("src/fifo"), work("src/link-to-fifo"));
    fs::create_symlink(work("nowhere"), work("src/dangling"));
    const int socketDescriptor = socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    work("src/socket").string().copy(address.sun_path, sizeof(address.sun_path) - 1);
    ASSERT_EQ(bind(socketDescriptor, reinterpret_cast<const sockaddr*>(&address), sizeof(address)), 0);
    close(socketDescriptor);
    writeFile(work("src/file"), "x");

    EXPECT_TRUE(engine.m_CopyDirectory("/tmp/area/src", "/tmp/area/dst"));
    EXPECT_EQ(readFile(work("dst/file")), "x");
    EXPECT_EQ(std::distance(fs::directory_iterator(work("dst")), fs::directory_iterator()), 1);
    const auto messages = tv.messages();
    EXPECT_EQ(std::count(messages.begin(), messages.end(), "-----------file copying------------"), 5);
}

TEST_F(DirectoryTest, copyGoesOnAfterAFileThatCannotBeWritten) {
    fs::create_directories(work("src"));
    fs::create_directories(work("dst/a"));
    writeFile(work("src/a"), "in the way of a directory");
    writeFile(work("src/b"), "copied");
    EXPECT_TRUE(engine.m_CopyDirectory("/tmp/area/src", "/tmp/area/dst"));
    EXPECT_TRUE(fs::is_directory(work("dst/a")));
    EXPECT_EQ(readFile(work("dst/b")), "copied");
}

TEST_F(DirectoryTest, copyFromAMissingDirectoryIsFalse) {
    fs::create_directories(work("dst"));
    EXPECT_FALSE(engine.m_CopyDirectory("/tmp/area/src", "/tmp/area/dst"));
    EXPECT_THAT(
        tv.transcript(),
        ElementsAre("E/35 m_CopyDirectory: src = /tmp/area/src, dst = /tmp/area/dst",
                    "E/35 m_CopyDirectory: srcPath(/tmp/area/src) does not exist or is not a directory."));
}

TEST_F(DirectoryTest, copyFromAFileIsFalse) {
    writeFile(work("src"), "x");
    fs::create_directories(work("dst"));
    EXPECT_FALSE(engine.m_CopyDirectory("/tmp/area/src", "/tmp/area/dst"));
    EXPECT_EQ(tv.messages().back(), "srcPath(/tmp/area/src) does not exist or is not a directory.");
}

TEST_F(DirectoryTest, copyIntoAMissingDirectoryIsFalseAndMakesNone) {
    fs::create_directories(work("src"));
    writeFile(work("src/a"), "x");
    EXPECT_FALSE(engine.m_CopyDirectory("/tmp/area/src", "/tmp/area/dst"));
    EXPECT_EQ(tv.messages().back(), "dstPath(/tmp/area/dst) does not exist or is not a directory.");
    EXPECT_FALSE(fs::exists(work("dst")));
}

TEST_F(DirectoryTest, copyThroughLinksToDirectoriesFollowsThem) {
    fs::create_directories(work("real-src"));
    fs::create_directories(work("real-dst"));
    writeFile(work("real-src/a"), "x");
    fs::create_directory_symlink(work("real-src"), work("src"));
    fs::create_directory_symlink(work("real-dst"), work("dst"));
    EXPECT_TRUE(engine.m_CopyDirectory("/tmp/area/src", "/tmp/area/dst"));
    EXPECT_EQ(readFile(work("real-dst/a")), "x");
}

TEST_F(DirectoryTest, copyFromADirectoryThatCannotBeListedIsFalse) {
    EXPECT_FALSE(engine.m_CopyDirectory("/tmp/area/src", "/tmp/area/dst"));
    fs::create_directories(work("src"));
    fs::create_directories(work("dst"));
    {
        const NoDescriptors none;
        EXPECT_FALSE(engine.m_CopyDirectory("/tmp/area/src", "/tmp/area/dst"));
    }
    EXPECT_EQ(tv.messages().back(), "Directories Checked");
}

TEST_F(DirectoryTest, createOfAnExistingFileIsTrueAndLeavesIt) {
    writeFile(work("file"), "kept");
    EXPECT_TRUE(engine.m_CreateDir("/tmp/area/file"));
    EXPECT_EQ(readFile(work("file")), "kept");
    EXPECT_THAT(tv.transcript(), ElementsAre());
}

TEST_F(DirectoryTest, createOfAnExistingDirectoryLeavesItsMode) {
    fs::create_directories(work("dir"));
    chmod(work("dir").c_str(), 0700);
    VXCloneHandler::m_ecloneType = kDirectionRestore;
    EXPECT_TRUE(engine.m_CreateDir("/tmp/area/dir"));
    EXPECT_EQ(modeOf(work("dir")), 0700U);
    EXPECT_THAT(tv.transcript(), ElementsAre());
}

TEST_F(DirectoryTest, createDuringABackupKeepsTheUmasksMode) {
    const mode_t before = umask(027);
    EXPECT_TRUE(engine.m_CreateDir("/tmp/area/dir"));
    umask(before);
    EXPECT_EQ(modeOf(work("dir")), 0750U);
    EXPECT_THAT(tv.transcript(), ElementsAre("E/35 m_CreateDir: Directory Path[/tmp/area/dir]"));
}

TEST_F(DirectoryTest, createDuringARestoreHasMode0764WhateverTheUmask) {
    VXCloneHandler::m_ecloneType = kDirectionRestore;
    const mode_t before = umask(077);
    EXPECT_TRUE(engine.m_CreateDir("/tmp/area/dir/"));
    umask(before);
    EXPECT_EQ(modeOf(work("dir")), 0764U);
    EXPECT_THAT(tv.transcript(), ElementsAre("E/35 m_CreateDir: Directory Path[/tmp/area/dir/]"));
}

TEST_F(DirectoryTest, createInAnotherDirectionKeepsTheUmasksMode) {
    VXCloneHandler::m_ecloneType = 2;
    const mode_t before = umask(022);
    EXPECT_TRUE(engine.m_CreateDir("/tmp/area/dir"));
    umask(before);
    EXPECT_EQ(modeOf(work("dir")), 0755U);
}

TEST_F(DirectoryTest, createBelowAMissingParentIsFalse) {
    EXPECT_FALSE(engine.m_CreateDir("/tmp/area/missing/dir"));
    EXPECT_THAT(tv.describedLog(),
                ElementsAre(AllOf(
                    StartsWith("E/35 m_CreateDir: Filesystem error: boost::filesystem::create_directory"),
                    HasSubstr("No such file or directory"), EndsWith("\"/tmp/area/missing/dir\""))));
}

TEST_F(DirectoryTest, createBelowAFileIsFalse) {
    writeFile(work("file"), "");
    EXPECT_FALSE(engine.m_CreateDir("/tmp/area/file/dir"));
    EXPECT_THAT(tv.messages(), ElementsAre(StartsWith("Filesystem error: ")));
}

TEST_F(DirectoryTest, cleanRemovesEveryEntryAndKeepsTheDirectory) {
    writeFile(clone("ProductCloneInfo.txt"), "x");
    writeFile(clone("validate.txt"), "x");
    fs::create_directories(clone("vconf/deep"));
    writeFile(clone("vconf/Vconf.json"), "{}");
    engine.m_CleanTVCloneDirectory();
    EXPECT_TRUE(fs::is_directory(kCloneDirectory));
    EXPECT_TRUE(fs::is_empty(kCloneDirectory));
    EXPECT_THAT(tv.transcript(), ElementsAre("E/35 m_CleanTVCloneDirectory: starting deleting stuff",
                                             "E/35 m_CleanTVCloneDirectory: deleting stuff",
                                             "E/35 m_CleanTVCloneDirectory: ++++++++++++++++++++++++++++ "
                                             "/opt/usr/apps/org.vorta.vxhotel-cloning/data/Clone"));
}

TEST_F(DirectoryTest, cleanWithoutCloneDirectoryLogsTwiceAndMakesNothing) {
    fs::remove_all(kCloneDirectory);
    engine.m_CleanTVCloneDirectory();
    EXPECT_FALSE(fs::exists(kCloneDirectory));
    EXPECT_THAT(tv.messages(), ElementsAre("starting deleting stuff",
                                           "++++++++++++++++++++++++++++ "
                                           "/opt/usr/apps/org.vorta.vxhotel-cloning/data/Clone"));
}

TEST_F(DirectoryTest, cleanStopsAtAnEntryThatCannotBeRemoved) {
    const MountedAt busy(clone("busy"));
    engine.m_CleanTVCloneDirectory();
    EXPECT_TRUE(fs::exists(clone("busy")));
    EXPECT_THAT(tv.messages(), ElementsAre("starting deleting stuff", "deleting stuff",
                                           AllOf(StartsWith(" Error : [boost::filesystem::remove"),
                                                 EndsWith("/Clone/busy\"]")),
                                           StartsWith("++++++++++++++++++++++++++++ ")));
}

TEST_F(DirectoryTest, cleanOfAFileInPlaceOfTheDirectoryLogsTheErrorAndKeepsIt) {
    fs::remove(kCloneDirectory);
    writeFile(kCloneDirectory, "kept");
    engine.m_CleanTVCloneDirectory();
    EXPECT_EQ(readFile(kCloneDirectory), "kept");
    EXPECT_THAT(
        tv.messages(),
        ElementsAre("starting deleting stuff", "deleting stuff",
                    AllOf(StartsWith(" Error : [boost::filesystem::directory_iterator"), HasSubstr("/Clone")),
                    StartsWith("++++++++++++++++++++++++++++ ")));
}

TEST_F(DirectoryTest, cleanDoesNotFollowALinkOutOfTheDirectory) {
    fs::create_directories(work("outside"));
    writeFile(work("outside/file"), "kept");
    fs::create_directory_symlink(work("outside"), clone("link"));
    engine.m_CleanTVCloneDirectory();
    EXPECT_TRUE(fs::is_empty(kCloneDirectory));
    EXPECT_EQ(readFile(work("outside/file")), "kept");
}

}  // namespace
}  // namespace vxtest
