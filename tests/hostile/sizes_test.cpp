// Sizes: empty files, one byte less or more, and values around the limits of numbers and of packages.

#include <gtest/gtest.h>
#include <sys/mount.h>

#include "tests/hostile/damage.h"
#include "tests/hostile/refusals.h"
#include "tests/hostile/sealing_again.h"

namespace vxtest {
namespace {

namespace fs = std::filesystem;

constexpr const char* kTooLarge = "too-large";
constexpr std::uint64_t kGiB = std::uint64_t{1} << 30U;
constexpr std::uint64_t kMiB = std::uint64_t{1} << 20U;

TEST(HostileSizesTest, everyFileThatIsEmptyOneShortOrOneMoreIsRefused) {
    const Stage& stage = Stage::instance();
    std::vector<Case> cases;
    for (const std::string& entry : entriesOf(stage.good())) {
        if (!fs::is_regular_file(stage.good() / entry)) {
            continue;
        }
        const std::uint64_t size = fs::file_size(stage.good() / entry);
        for (const std::uint64_t wanted : {std::uint64_t{0}, size - 1, size + 1, size * 2}) {
            cases.push_back({entry + " of " + std::to_string(wanted) + " bytes",
                             [entry, wanted](const fs::path& package) {
                                 resize(package / entry, wanted);
                                 return true;
                             },
                             kAltered, entry == "validate.txt" ? "" : entry});
        }
    }
    expectRefusals(cases);
}

/// A television with a small disk; the destructor removes it.
class SmallDisk {
 public:
    explicit SmallDisk(const fs::path& folder) : folder_(folder) {
        made_ = mount("none", folder_.c_str(), "tmpfs", 0, "size=64m") == 0;
    }
    SmallDisk(const SmallDisk&) = delete;
    SmallDisk& operator=(const SmallDisk&) = delete;
    ~SmallDisk() { umount(folder_.c_str()); }
    bool made() const { return made_; }

 private:
    fs::path folder_;
    bool made_;
};

TEST(HostileSizesTest, sparseFilesAroundTheLimitsOfNumbersAreRefusedBeforeTheyAreCopied) {
    Stage& stage = Stage::instance();
    const SmallDisk disk(stage.here().cloneRoot());
    ASSERT_TRUE(disk.made());
    for (const std::uint64_t size : {2 * kGiB - 1, 2 * kGiB, 2 * kGiB + 1, 4 * kGiB - 1, 4 * kGiB,
                                     4 * kGiB + 1, std::uint64_t{1} << 40U}) {
        SCOPED_TRACE(size);
        stage.layPackage();
        resize(stage.package() / "logo/logo.png", size);
        const Outcome outcome = stage.restoreHere();
        EXPECT_EQ(outcome.code, size > 4 * kGiB ? kTooLarge : "television-full") << outcome.message;
        EXPECT_TRUE(fs::is_empty(stage.here().cloneRoot()));
    }
}

TEST(HostileSizesTest, packagesBeyondTheLimitsAreRefused) {
    expectRefusals(
        {{"a file of 4 GiB and a byte",
          [](const fs::path& package) {
              resize(package / "logo/logo.png", 4 * kGiB + 1);
              return true;
          },
          kTooLarge, "logo.png"},
         {"three files of 4 GiB",
          [](const fs::path& package) {
              for (const char* const name : {"a", "b", "c"}) {
                  resize(package / name, 4 * kGiB);
              }
              return true;
          },
          kTooLarge, "is larger than a package is"},
         {"10,001 entries",
          [](const fs::path& package) {
              for (int number = 0; number < 10'001; ++number) {
                  resize(package / "logo" / std::to_string(number), 0);
              }
              return true;
          },
          kTooLarge, "10000 entries"},
         {"9 layers",
          [](const fs::path& package) { return fs::create_directories(package / "logo/2/3/4/5/6/7/8/9"); },
          kTooLarge, "logo/2/3/4/5/6/7/8/9"},
         {"a manifest of 8 MiB and a byte",
          [](const fs::path& package) {
              resize(package / "manifest.json", 8 * kMiB + 1);
              return true;
          },
          kAltered, "manifest.json"},
         {"settings of 16 MiB and a byte, sealed again",
          [](const fs::path& package) {
              writeFile(package / "vconf/Vconf.json", "{}" + std::string(16 * kMiB - 1, ' '));
              sealAgain(package);
              return true;
          },
          "settings-damaged", "larger than 16 MiB"}});
}

/// Needs as much memory or disk as the size of the file, so it runs only in the long form.
TEST(HostileSizesTest, sparseFilesThatFitOnTheDiskAreReadWholeAndRefused) {
    if (!isLongForm()) {
        GTEST_SKIP() << "a part of the long form: VX_SWEEP=long";
    }
    Stage& stage = Stage::instance();
    for (const std::uint64_t size : {2 * kGiB - 1, 2 * kGiB, 2 * kGiB + 1, 4 * kGiB - 1, 4 * kGiB}) {
        SCOPED_TRACE(size);
        stage.layPackage();
        resize(stage.package() / "logo/added.png", size);
        const FileTree before = stage.there().state();
        const Outcome outcome = stage.restoreThere({"--no-safety"});
        EXPECT_EQ(outcome.code, kAltered) << outcome.message;
        EXPECT_NE(outcome.message.find("logo/added.png added"), std::string::npos) << outcome.message;
        EXPECT_EQ(stage.there().state(), before);
    }
}

}  // namespace
}  // namespace vxtest
