#include "cloning_app/base/disk_space.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <linux/magic.h>
#include <sys/statvfs.h>

#include "tests/unit/cloning_app/test_folder.h"

namespace vxclone {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;

constexpr std::uint64_t kFourGiB = std::uint64_t{4} << 30U;

TEST(DiskSpace, fatStickHoldsFilesBelowFourGiB) {
    const FileSystemRules& fat = rulesOf(MSDOS_SUPER_MAGIC);
    EXPECT_THAT(problemWith(fat, "movie", kFourGiB - 1), IsEmpty());
    EXPECT_THAT(problemWith(fat, "movie", kFourGiB), HasSubstr("FAT"));
}

TEST(DiskSpace, fatStickRefusesNamesThatItCannotHold) {
    const FileSystemRules& fat = rulesOf(MSDOS_SUPER_MAGIC);
    for (const char* const name :
         {"a:b", "a?", "a*", "a|b", "a<b", "a>b", "a\"b", "a\\b", "a\nb", "dot.", "blank "}) {
        EXPECT_THAT(problemWith(fat, name, 1), HasSubstr("name")) << name;
    }
    EXPECT_THAT(problemWith(fat, "org.vorta.homedatacontrol-service", 1), IsEmpty());
}

/// The problem with the last of the paths, which are all in one tree.
std::string problemWithLast(long fileSystemType, const std::vector<std::string>& paths) {
    TreeJudge judge(rulesOf(fileSystemType));
    std::string problem;
    for (const std::string& path : paths) {
        const std::string name = path.substr(path.rfind('/') + 1);
        problem = judge.problemWith({name, path, 1});
    }
    return problem;
}

TEST(DiskSpace, fatStickRefusesTwoNamesOfTheSameLettersInOneFolder) {
    EXPECT_EQ(problemWithLast(MSDOS_SUPER_MAGIC, {"/p/Logo.png", "/p/a", "/p/logo.PNG"}),
              "has the name of Logo.png, which a FAT stick takes for the same; rename one of them");
    EXPECT_THAT(problemWithLast(MSDOS_SUPER_MAGIC, {"/p/a/logo.png", "/p/b/Logo.png"}), IsEmpty());
    EXPECT_THAT(problemWithLast(TMPFS_MAGIC, {"/p/Logo.png", "/p/logo.png"}), IsEmpty());
}

TEST(DiskSpace, otherFileSystemsRefuseNothing) {
    EXPECT_THAT(problemWith(rulesOf(TMPFS_MAGIC), "a:b", kFourGiB), IsEmpty());
}

TEST(DiskSpace, treeThatFitsPasses) {
    const TestFolder folder;
    const Descriptor opened(open(folder.path().c_str(), O_RDONLY | O_DIRECTORY));
    EXPECT_TRUE(checkSpace({opened.get(), "stick", Place::Stick}, {1, 1, 1}));
}

TEST(DiskSpace, treeThatDoesNotFitIsRefusedNamingBothSizes) {
    const TestFolder folder;
    const Descriptor opened(open(folder.path().c_str(), O_RDONLY | O_DIRECTORY));
    constexpr std::uint64_t kMoreThanAnyDisk = std::uint64_t{1} << 60U;
    const TreeSize size{1, 52, kMoreThanAnyDisk};
    const auto stick = checkSpace({opened.get(), "stick", Place::Stick}, size);
    ASSERT_FALSE(stick);
    EXPECT_EQ(stick.error().code, ErrorCode::StickFull);
    EXPECT_THAT(
        stick.error().sentence,
        testing::MatchesRegex("the package \\(52 files, 1152921504.6 GB\\) needs 1152921504.6 GB, the "
                              "stick has [0-9.]+ .?B free; free some space or take another stick"));
    EXPECT_THAT(checkSpace({opened.get(), "tv", Place::Television}, {1, 1, 2}, {}, size).error().sentence,
                testing::MatchesRegex("the package \\(1 file, 2 bytes\\) and what a restore needs besides "
                                      "\\(1152921504.6 GB\\) need 1152921504.6 GB, the television's disk has "
                                      "[0-9.]+ .?B free; free some "
                                      "space on the television"));
    EXPECT_EQ(checkSpace({opened.get(), "tv", Place::Television}, size).error().code,
              ErrorCode::TelevisionFull);
    EXPECT_TRUE(checkSpace({opened.get(), "tv", Place::Television}, size, {0, 0, 2 * kMoreThanAnyDisk}));
}

TEST(DiskSpace, treeOfMoreFilesThanTheDiskTakesIsRefusedNamingBothNumbers) {
    const TestFolder folder;
    const Descriptor opened(open(folder.path().c_str(), O_RDONLY | O_DIRECTORY));
    struct statvfs facts {};
    ASSERT_EQ(fstatvfs(opened.get(), &facts), 0);
    if (facts.f_files == 0) {
        GTEST_SKIP() << "this file system does not count its files";
    }
    // So many files that only their number exceeds the disk, not their bytes.
    const TreeSize size{facts.f_favail + 1000, 0, 0};
    const auto stick =
        checkSpace({opened.get(), "stick", Place::Stick}, size, {0, 0, std::uint64_t{1} << 60U});
    ASSERT_FALSE(stick);
    EXPECT_EQ(stick.error().code, ErrorCode::StickFull);
    EXPECT_THAT(stick.error().sentence, HasSubstr(std::to_string(size.entries) + " files and folders"));
    EXPECT_TRUE(checkSpace({opened.get(), "stick", Place::Stick}, size, {2000, 0, std::uint64_t{1} << 60U}));
}

TEST(DiskSpace, sizeTextHasTheUnitThatFits) {
    EXPECT_EQ(sizeText(999), "999 bytes");
    EXPECT_EQ(sizeText(1'400'000), "1.4 MB");
    EXPECT_EQ(sizeText(12'000'000'000'000), "12000.0 GB");
}

}  // namespace
}  // namespace vxclone
