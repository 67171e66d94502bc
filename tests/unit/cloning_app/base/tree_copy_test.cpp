#include "cloning_app/base/tree_copy.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/stat.h>

#include <cerrno>
#include <csignal>
#include <map>

#include "tests/unit/cloning_app/own_mounts.h"
#include "tests/unit/cloning_app/test_folder.h"

namespace vxclone {
namespace {

using testing::HasSubstr;

class TreeCopyTest : public testing::Test {
 protected:
    Result<void> link() {
        const Descriptor from = openFolder(from_.path());
        const Descriptor to = openFolder(to_.path());
        return linkTree({from.get(), from_.path().string(), Place::Television},
                        {to.get(), to_.path().string(), Place::Television}, limits_);
    }

    static Descriptor openFolder(const std::filesystem::path& path) {
        return Descriptor(open(path.c_str(), O_RDONLY | O_DIRECTORY));
    }

    Result<TreeSize> measure() {
        const Descriptor from = openFolder(from_.path());
        return measureTree({from.get(), from_.path().string(), Place::Stick}, limits_);
    }

    Result<TreeSize> copy(Flush flush = Flush::No) {
        const Descriptor from = openFolder(from_.path());
        const Descriptor to = openFolder(to_.path());
        return copyTree({from.get(), from_.path().string(), Place::Stick},
                        {to.get(), to_.path().string(), Place::Television}, limits_, flush, calls_, stop_);
    }

    /// The error code with which both measuring and copying refuse the tree.
    ErrorCode refusal() {
        const auto measured = measure();
        const auto copied = copy();
        EXPECT_FALSE(measured);
        EXPECT_FALSE(copied);
        if (measured || copied) {
            return ErrorCode::Internal;
        }
        EXPECT_EQ(measured.error().code, copied.error().code);
        return copied.error().code;
    }

    TestFolder from_;
    TestFolder to_;
    TreeLimits limits_;
    DiskCalls calls_ = realDiskCalls();
    StopFlag stop_;
};

TEST_F(TreeCopyTest, linkedTreeHoldsTheSameFilesUnderASecondName) {
    writeFile(from_ / "a", "1");
    writeFile(from_ / "folder/deeper/b", "2");
    std::filesystem::create_directory(from_ / "empty");
    ASSERT_TRUE(link());
    EXPECT_EQ(contentOf(to_.path()), contentOf(from_.path()));
    EXPECT_TRUE(std::filesystem::equivalent(from_ / "folder/deeper/b", to_ / "folder/deeper/b"));
    std::filesystem::remove_all(to_ / "folder");
    EXPECT_EQ(readFile(from_ / "folder/deeper/b"), "2");
}

TEST_F(TreeCopyTest, treeThatCannotBeLinkedSaysWhy) {
    writeFile(from_ / "a", "1");
    writeFile(to_ / "a", "there already");
    const auto linked = link();
    ASSERT_FALSE(linked);
    EXPECT_EQ(linked.error().code, ErrorCode::TelevisionIo);
    EXPECT_EQ(readFile(to_ / "a"), "there already");
}

TEST_F(TreeCopyTest, filesAndFoldersArriveAsTheyAre) {
    writeFile(from_ / "vconf/Vconf.json", "{}");
    writeFile(from_ / "logo/deep/er/boot.jpg", std::string(300'000, 'x') + '\0');
    writeFile(from_ / "empty", "");
    std::filesystem::create_directory(from_ / "none");
    const auto size = copy(Flush::Yes);
    ASSERT_TRUE(size) << size.error().sentence;
    EXPECT_EQ(contentOf(to_.path()), contentOf(from_.path()));
    EXPECT_EQ(size->files, 3U);
    EXPECT_EQ(size->bytes, 300'003U);
    EXPECT_EQ(size->entries, 8U);
    const auto measured = measure();
    EXPECT_EQ(measured->entries, size->entries);
    EXPECT_EQ(measured->bytes, size->bytes);
}

TEST_F(TreeCopyTest, largeFileIsOnItsWayToTheDiskWhileItIsWritten) {
    constexpr std::uint64_t kEighth = std::uint64_t{8} << 20U;
    writeFile(from_ / "film", "");
    std::filesystem::resize_file(from_ / "film", 2 * kEighth + 1);
    for (const auto& [flush, wanted] : std::map<Flush, std::vector<std::uint64_t>>{
             {Flush::Yes, {kEighth, 2 * kEighth, 2 * kEighth + 1}}, {Flush::No, {}}}) {
        std::vector<std::uint64_t> begun;
        calls_.startFlush = [&begun](int file) {
            struct stat facts {};
            fstat(file, &facts);
            begun.push_back(static_cast<std::uint64_t>(facts.st_size));
        };
        ASSERT_TRUE(copy(flush));
        EXPECT_EQ(begun, wanted);
        std::filesystem::remove(to_ / "film");
    }
}

TEST_F(TreeCopyTest, writesTellHowMuchIsWritten) {
    writeFile(from_ / "a", std::string(100, 'x'));
    writeFile(from_ / "b", std::string(300, 'x'));
    std::vector<double> parts;
    calls_ = countingWrites(calls_, 400, [&parts](double part) { parts.push_back(part); });
    ASSERT_TRUE(copy());
    EXPECT_THAT(parts, testing::ElementsAre(0.25, 1));
}

TEST_F(TreeCopyTest, writeThatFailsTellsNothingNewAndKeepsItsReason) {
    std::vector<double> parts;
    calls_.write = [](int, const void*, std::size_t) -> ssize_t {
        errno = ENOSPC;
        return -1;
    };
    calls_ = countingWrites(calls_, 400, [&parts](double part) {
        parts.push_back(part);
        errno = 0;
    });
    writeFile(from_ / "a", "x");
    EXPECT_EQ(copy().error().code, ErrorCode::TelevisionFull);
    EXPECT_THAT(parts, testing::ElementsAre(0));
}

TEST_F(TreeCopyTest, otherFileSystemBelowTheFolderIsRefused) {
    std::filesystem::create_directories(from_ / "vconf");
    const bool allowed = withOwnMounts([this] {
        ASSERT_EQ(mount("tmpfs", (from_ / "vconf").c_str(), "tmpfs", 0, "size=64k"), 0);
        EXPECT_EQ(refusal(), ErrorCode::UnsafeEntry);
        EXPECT_THAT(measure().error().sentence, HasSubstr("another file system"));
    });
    if (!allowed) {
        GTEST_SKIP() << "mounting is not allowed here";
    }
}

TEST_F(TreeCopyTest, linksToFilesAndFoldersAreRefused) {
    writeFile(from_ / "vconf/Vconf.json", "{}");
    std::filesystem::create_symlink("/etc/passwd", from_ / "logo");
    EXPECT_EQ(refusal(), ErrorCode::UnsafeEntry);
    EXPECT_THAT(measure().error().sentence, HasSubstr((from_ / "logo").string()));
    std::filesystem::remove(from_ / "logo");
    std::filesystem::create_directory_symlink("/etc", from_ / "vconf/etc");
    EXPECT_EQ(refusal(), ErrorCode::UnsafeEntry);
}

TEST_F(TreeCopyTest, fifoIsRefusedWithoutWaiting) {
    ASSERT_EQ(mkfifo((from_ / "vconf").c_str(), 0600), 0);
    EXPECT_EQ(refusal(), ErrorCode::UnsafeEntry);
}

TEST_F(TreeCopyTest, tooManyEntriesAreRefused) {
    limits_.entries = 3;
    for (const char* const name : {"a", "b", "c"}) {
        writeFile(from_ / name, "x");
    }
    EXPECT_TRUE(measure());
    writeFile(from_ / "d", "x");
    EXPECT_EQ(refusal(), ErrorCode::TooLarge);
    std::filesystem::remove(from_ / "d");
    std::filesystem::remove(from_ / "c");
    writeFile(from_ / "sub/d", "x");
    EXPECT_FALSE(measure());
}

TEST_F(TreeCopyTest, tooDeepTreeIsRefused) {
    limits_.depth = 2;
    writeFile(from_ / "one/two", "x");
    EXPECT_TRUE(measure());
    writeFile(from_ / "one/deep/three", "x");
    EXPECT_EQ(refusal(), ErrorCode::TooLarge);
}

TEST_F(TreeCopyTest, tooLargeFileIsRefused) {
    limits_.fileBytes = 10;
    writeFile(from_ / "a", std::string(10, 'x'));
    EXPECT_TRUE(measure());
    writeFile(from_ / "b", std::string(11, 'x'));
    EXPECT_EQ(refusal(), ErrorCode::TooLarge);
}

TEST_F(TreeCopyTest, tooLargeTotalIsRefused) {
    limits_.totalBytes = 20;
    writeFile(from_ / "a", std::string(10, 'x'));
    writeFile(from_ / "b", std::string(10, 'x'));
    EXPECT_TRUE(measure());
    writeFile(from_ / "c", "x");
    EXPECT_EQ(refusal(), ErrorCode::TooLarge);
}

TEST_F(TreeCopyTest, tooLongNameIsRefused) {
    limits_.nameBytes = 4;
    writeFile(from_ / "four", "x");
    EXPECT_TRUE(measure());
    writeFile(from_ / "fives", "x");
    EXPECT_EQ(refusal(), ErrorCode::TooLarge);
}

TEST_F(TreeCopyTest, hugeSparseFileIsRefusedBeforeAnythingIsCopied) {
    writeFile(from_ / "a", "");
    std::filesystem::resize_file(from_ / "a", (std::uintmax_t{4} << 30U) + 1);
    EXPECT_EQ(refusal(), ErrorCode::TooLarge);
}

TEST_F(TreeCopyTest, sidecarsOfDesktopSystemsStayOnTheStick) {
    writeFile(from_ / ".DS_Store", "x");
    writeFile(from_ / "System Volume Information/x", "x");
    writeFile(from_ / "vconf/._Vconf.json", "x");
    ASSERT_TRUE(copy());
    EXPECT_EQ(contentOf(to_.path()), (std::map<std::string, std::string>{{"vconf", "/"}}));
}

TEST_F(TreeCopyTest, fileThatIsAlreadyThereIsNotWrittenThrough) {
    writeFile(from_ / "a", "new");
    std::filesystem::create_symlink(to_ / "elsewhere", to_ / "a");
    EXPECT_FALSE(copy());
    EXPECT_FALSE(std::filesystem::exists(to_ / "elsewhere"));
}

TEST_F(TreeCopyTest, everyFileIsAwaitedAndThenAllIsFlushedWhenAsked) {
    constexpr int kFiles = 40;
    for (int k = 0; k < kFiles; ++k) {
        writeFile(from_ / ("folder" + std::to_string(k % 2)) / std::to_string(k), "x");
    }
    std::vector<std::string> calls;
    std::size_t mostOpen = 0;
    calls_.startFlush = [&](int /*descriptor*/) { calls.emplace_back("start"); };
    calls_.awaitFlush = [&](int /*descriptor*/) {
        mostOpen =
            std::max(mostOpen, static_cast<std::size_t>(std::count(calls.begin(), calls.end(), "start") -
                                                        std::count(calls.begin(), calls.end(), "await")));
        calls.emplace_back("await");
        return 0;
    };
    calls_.flushAll = [&](int /*folder*/) {
        calls.emplace_back("all");
        return 0;
    };
    ASSERT_TRUE(copy(Flush::Yes));
    EXPECT_EQ(std::count(calls.begin(), calls.end(), "start"), kFiles);
    EXPECT_EQ(std::count(calls.begin(), calls.end(), "await"), kFiles);
    EXPECT_EQ(std::count(calls.begin(), calls.end(), "all"), 1);
    EXPECT_EQ(calls.back(), "all");
    EXPECT_EQ(mostOpen, 17U);

    calls.clear();
    ASSERT_EQ(removeContents(openFolder(to_.path()).get()), 0);
    ASSERT_TRUE(copy(Flush::No));
    EXPECT_THAT(calls, testing::IsEmpty());
}

TEST_F(TreeCopyTest, fileThatTheDiskRefusesLateIsNamed) {
    writeFile(from_ / "a", "x");
    writeFile(from_ / "b", "x");
    int awaited = 0;
    calls_.awaitFlush = [&awaited](int /*descriptor*/) {
        errno = EIO;
        return ++awaited == 2 ? -1 : 0;
    };
    const auto copied = copy(Flush::Yes);
    ASSERT_FALSE(copied);
    EXPECT_THAT(copied.error().sentence, HasSubstr((to_ / "b").string()));
}

TEST_F(TreeCopyTest, lastFlushThatFailsIsAFailure) {
    writeFile(from_ / "a", "x");
    calls_.flushAll = [](int /*folder*/) {
        errno = EIO;
        return -1;
    };
    const auto copied = copy(Flush::Yes);
    ASSERT_FALSE(copied);
    EXPECT_THAT(copied.error().sentence, HasSubstr(to_.path().string()));
}

TEST_F(TreeCopyTest, shortAndInterruptedWritesAreCarriedOn) {
    writeFile(from_ / "a", "hello world");
    bool interrupt = false;
    calls_.write = [&interrupt](int descriptor, const void* data, std::size_t size) -> ssize_t {
        interrupt = !interrupt;
        if (interrupt) {
            errno = EINTR;
            return -1;
        }
        return write(descriptor, data, std::min(size, std::size_t{3}));
    };
    ASSERT_TRUE(copy());
    EXPECT_EQ(readFile(to_ / "a"), "hello world");
}

TEST_F(TreeCopyTest, stopEndsTheCopyWithTheSignal) {
    writeFile(from_ / "a", "x");
    stop_.raise(SIGTERM);
    const auto copied = copy();
    ASSERT_FALSE(copied);
    EXPECT_EQ(copied.error().code, ErrorCode::Terminated);
}

TEST_F(TreeCopyTest, ruleRefusesAnEntryBeforeTheCopy) {
    writeFile(from_ / "vconf/a:b", "x");
    const Descriptor from = openFolder(from_.path());
    const auto rule = [](const TreeEntry& entry) {
        return entry.name == "a:b" ? std::string("has a bad name") : std::string();
    };
    const auto measured = measureTree({from.get(), "tv", Place::Television}, limits_, rule);
    ASSERT_FALSE(measured);
    EXPECT_EQ(measured.error().code, ErrorCode::StickLimit);
    EXPECT_EQ(measured.error().sentence, "tv/vconf/a:b has a bad name");
}

TEST_F(TreeCopyTest, fullDiskIsNamed) {
    writeFile(from_ / "a", std::string(300'000, 'x'));
    const bool allowed = withOwnMounts([this] {
        ASSERT_EQ(mount("tmpfs", to_.path().c_str(), "tmpfs", 0, "size=64k"), 0);
        const auto copied = copy(Flush::Yes);
        ASSERT_FALSE(copied);
        EXPECT_EQ(copied.error().code, ErrorCode::TelevisionFull);
        EXPECT_THAT(copied.error().sentence, HasSubstr((to_ / "a").string()));
    });
    if (!allowed) {
        GTEST_SKIP() << "mounting is not allowed here";
    }
}

TEST_F(TreeCopyTest, removalOfContentsTakesLinksNotTheirTargets) {
    const TestFolder elsewhere;
    writeFile(elsewhere / "kept", "x");
    std::filesystem::create_directory_symlink(elsewhere.path(), to_ / "link");
    writeFile(to_ / "a/b/c", "x");
    ASSERT_EQ(mkfifo((to_ / "fifo").c_str(), 0600), 0);
    EXPECT_EQ(removeContents(openFolder(to_.path()).get()), 0);
    EXPECT_TRUE(std::filesystem::is_empty(to_.path()));
    EXPECT_TRUE(std::filesystem::exists(elsewhere / "kept"));
}

}  // namespace
}  // namespace vxclone
