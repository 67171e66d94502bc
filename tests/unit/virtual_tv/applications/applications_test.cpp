#include "virtual_tv/applications/applications.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "tests/unit/virtual_tv/test_television.h"
#include "virtual_tv/applications/application_run.h"

namespace vxtv {
namespace {

namespace fs = std::filesystem;

class ApplicationsTest : public testing::Test {
 protected:
    ApplicationsTest() {
        fs::create_directories(source_ / "bin");
        test::writeFile(source_ / "bin/app", "#!/bin/sh\n");
        fs::permissions(source_ / "bin/app", fs::perms::owner_all);
        test::writeFile(source_ / kManifestName,
                        manifestText({"org.example.app", "Example", "bin/app", {}, false}));
    }

    /// The error of the installation, which must leave nothing behind.
    ErrorCode refused() {
        const auto installed = applications_.install(source_);
        EXPECT_FALSE(installed);
        for (const auto& entry : fs::directory_iterator(applications_.folderOf("x").parent_path())) {
            EXPECT_EQ("org.vorta.vxhotel-cloning", entry.path().filename());
        }
        return installed.error().code;
    }

    test::TestFolder place_;
    Television television_ = test::makeTelevision(place_.path() / "tv");
    Applications applications_{television_.folder()};
    fs::path source_ = place_.path() / "source";
};

TEST_F(ApplicationsTest, televisionWithoutApplicationsListsNone) {
    EXPECT_EQ(std::vector<std::string>(), applications_.ids().value());
}

TEST_F(ApplicationsTest, installedApplicationIsFoundWithItsFilesAndADataFolder) {
    ASSERT_TRUE(applications_.install(source_));
    EXPECT_EQ(std::vector<std::string>{"org.example.app"}, applications_.ids().value());
    EXPECT_EQ("Example", applications_.find("org.example.app").value().title);
    EXPECT_TRUE(fs::is_directory(applications_.dataOf("org.example.app")));
    EXPECT_EQ("#!/bin/sh\n", test::readFile(applications_.folderOf("org.example.app") / "bin/app"));
}

TEST_F(ApplicationsTest, secondInstallationIsRefusedAndChangesNothing) {
    ASSERT_TRUE(applications_.install(source_));
    test::writeFile(applications_.dataOf("org.example.app") / "own", "kept");
    const auto again = applications_.install(source_);
    ASSERT_FALSE(again);
    EXPECT_EQ(ErrorCode::AlreadyExists, again.error().code);
    EXPECT_EQ("kept", test::readFile(applications_.dataOf("org.example.app") / "own"));
}

TEST_F(ApplicationsTest, applicationWithALinkIsRefusedWhole) {
    fs::create_symlink("/etc/passwd", source_ / "link");
    EXPECT_EQ(ErrorCode::BadApplication, refused());
}

TEST_F(ApplicationsTest, folderThatIsALinkIsRefused) {
    const fs::path link = place_.path() / "link";
    fs::create_directory_symlink(source_, link);
    for (const fs::path& named : {link, link / ""}) {
        const auto installed = applications_.install(named);
        ASSERT_FALSE(installed);
        EXPECT_EQ(named.string() + " is a link, not an application; name the folder itself",
                  installed.error().sentence);
    }
    EXPECT_TRUE(applications_.ids()->empty());
}

TEST_F(ApplicationsTest, linkOnTheWayToTheTelevisionsApplicationsIsRefused) {
    const fs::path theirs = place_.path() / "theirs";
    fs::rename(television_.folder().opt() / "usr", theirs);
    fs::create_directory_symlink(theirs, television_.folder().opt() / "usr");
    const auto installed = applications_.install(source_);
    ASSERT_FALSE(installed);
    EXPECT_EQ(ErrorCode::Damaged, installed.error().code);
    EXPECT_FALSE(fs::exists(theirs / "apps/org.example.app"));
}

TEST_F(ApplicationsTest, applicationWithAPipeIsRefusedWhole) {
    ASSERT_EQ(0, mkfifo((source_ / "pipe").c_str(), 0600));
    EXPECT_EQ(ErrorCode::BadApplication, refused());
}

TEST_F(ApplicationsTest, applicationWithoutItsProgramIsRefused) {
    fs::remove(source_ / "bin/app");
    EXPECT_EQ(ErrorCode::BadApplication, refused());
}

TEST_F(ApplicationsTest, applicationWhoseProgramIsALinkOutOfItIsRefused) {
    fs::remove(source_ / "bin/app");
    fs::create_symlink("/bin/sh", source_ / "bin/app");
    EXPECT_EQ(ErrorCode::BadApplication, refused());
}

TEST_F(ApplicationsTest, programThatDoesNotShipIsRefused) {
    test::writeFile(source_ / kManifestName,
                    manifestText({"org.example.app", "Example", "no_such_program", {}, false}));
    EXPECT_EQ(ErrorCode::BadApplication, refused());
}

TEST_F(ApplicationsTest, findOfUnknownAndOfNoIdTellThemApart) {
    EXPECT_EQ(ErrorCode::UnknownApplication, applications_.find("org.example.none").error().code);
    EXPECT_EQ(ErrorCode::BadArgument, applications_.find("../tv").error().code);
}

TEST_F(ApplicationsTest, findInAFolderOfAnotherNameIsRefused) {
    ASSERT_TRUE(applications_.install(source_));
    fs::rename(applications_.folderOf("org.example.app"), applications_.folderOf("org.example.other"));
    EXPECT_EQ(ErrorCode::BadApplication, applications_.find("org.example.other").error().code);
}

TEST_F(ApplicationsTest, markIsHeldOnceAndGoneWithItsHolder) {
    const Folder& folder = television_.folder();
    {
        const auto mark = RunningMark::take(folder, "a");
        ASSERT_TRUE(mark);
        EXPECT_FALSE(runningProcess(folder, "a")) << "it is being started";
        mark->tellProcess(77);
        EXPECT_EQ(77, runningProcess(folder, "a"));
        EXPECT_EQ(ErrorCode::Busy, RunningMark::take(folder, "a").error().code);
        EXPECT_EQ(77, runningProcess(folder, "a"));
        EXPECT_TRUE(RunningMark::take(folder, "b"));
    }
    EXPECT_FALSE(runningProcess(folder, "a"));
    EXPECT_TRUE(fs::is_empty(folder.run()));
}

TEST_F(ApplicationsTest, markOfAKilledHolderCountsForNothingAndIsRemoved) {
    const Folder& folder = television_.folder();
    EXPECT_EQ(0, test::inChild([&folder] {
                  auto mark = RunningMark::take(folder, "a");
                  mark->tellProcess(77);
                  _exit(runningProcess(folder, "a") ? 0 : 1);
                  return true;
              }));
    EXPECT_FALSE(runningProcess(folder, "a"));
    removeStaleMarks(folder);
    EXPECT_TRUE(fs::is_empty(folder.run()));
}

TEST_F(ApplicationsTest, markOfARunningApplicationIsNotRemoved) {
    const auto mark = RunningMark::take(television_.folder(), "a");
    ASSERT_TRUE(mark);
    mark->tellProcess(77);
    removeStaleMarks(television_.folder());
    EXPECT_EQ(77, runningProcess(television_.folder(), "a"));
}

TEST_F(ApplicationsTest, stopOfWhatDoesNotRunIsRefused) {
    EXPECT_EQ(ErrorCode::NotRunning, stopApplication(television_.folder(), "a").error().code);
}

}  // namespace
}  // namespace vxtv
