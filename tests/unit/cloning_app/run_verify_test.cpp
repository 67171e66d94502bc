#include <gmock/gmock.h>

#include <csignal>

#include "cloning_app/run/clone_run.h"
#include "tests/unit/cloning_app/fake_settings_store.h"
#include "tests/unit/cloning_app/fake_system_info.h"
#include "tests/unit/cloning_app/recording_view.h"
#include "tests/unit/cloning_app/sealed_package.h"
#include "tests/unit/cloning_app/test_folder.h"

namespace vxclone {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class RunVerifyTest : public testing::Test {
 protected:
    RunVerifyTest() {
        FakeSettingsStore::instance().reset();
        FakeSystemInfo::reset();
        writeFile(root_ / "stale", "x");
        writeFile(package_ / "vconf/Vconf.json", "{}");
        sealFolder(package_);
    }

    Result<Report> verify() { return runVerify({engine_, view_, stop_, root_}, package_); }

    /// The status of a verification that leaves the stick as it was and nothing on the television.
    int status() {
        const auto before = contentOf(package_);
        const auto report = verify();
        EXPECT_EQ(contentOf(package_), before);
        EXPECT_TRUE(std::filesystem::is_empty(root_));
        EXPECT_EQ(engine_.runs, 0);
        return conclude(report, view_);
    }

    TestFolder folder_;
    const std::filesystem::path package_ = folder_ / "stick/clone";
    const std::filesystem::path root_ = folder_ / "Clone";
    FakeEngine engine_;
    RecordingView view_;
    StopFlag stop_;
};

TEST_F(RunVerifyTest, goodPackageEndsWithZeroAndSaysSo) {
    EXPECT_EQ(status(), 0);
    EXPECT_THAT(view_.ended->closing, ElementsAre(HasSubstr("fits this television and is unaltered.")));
    EXPECT_EQ(view_.ended->checks.size(), 4U);
}

TEST_F(RunVerifyTest, statusIsThatOfTheGravestFinding) {
    FakeSystemInfo::instance().model = "VX75C2";
    EXPECT_EQ(status(), 4);
    writeFile(package_ / "vconf/Vconf.json", "[]");
    EXPECT_EQ(status(), 5);
    engine_.key = false;
    EXPECT_EQ(status(), 7);
    EXPECT_EQ(view_.ended->closing.size(), 2U);
    std::filesystem::remove(package_ / "validate.txt");
    EXPECT_EQ(status(), 3);
    EXPECT_THAT(view_.ended->closing.at(0), HasSubstr("validate.txt"));
    EXPECT_EQ(view_.ended->closing.size(), 3U);
}

TEST_F(RunVerifyTest, damagedSettingsOfASealedPackageAreAltered) {
    writeFile(package_ / "vconf/Vconf.json", "{\"a");
    EXPECT_EQ(status(), 5);
}

TEST_F(RunVerifyTest, folderThatIsNoPackageLeavesTheCloneFolderAlone) {
    std::filesystem::remove_all(package_);
    writeFile(package_ / "photo.jpg", "x");
    EXPECT_EQ(conclude(verify(), view_), 3);
    EXPECT_TRUE(std::filesystem::exists(root_ / "stale"));
}

TEST_F(RunVerifyTest, unsafeEntryIsRefusedWithNothingStaged) {
    std::filesystem::create_symlink("/etc/passwd", package_ / "link");
    EXPECT_EQ(conclude(verify(), view_), 3);
    EXPECT_EQ(view_.failure->code, ErrorCode::UnsafeEntry);
}

TEST_F(RunVerifyTest, libraryThatBreaksOffEmptiesTheCloneFolder) {
    engine_.identityAnswer = failure(ErrorCode::Internal, "broke off");
    EXPECT_EQ(status(), 70);
}

TEST_F(RunVerifyTest, stopEndsItWithTheSignal) {
    stop_.raise(SIGINT);
    EXPECT_EQ(status(), 130);
}

TEST_F(RunVerifyTest, televisionsSettingsAreNotTouched) {
    verify();
    EXPECT_EQ(std::get<int>(*FakeSettingsStore::instance().get(kProgressKey)), 100);
}

TEST_F(RunVerifyTest, sidecarsThatAComputerLeftDoNotMatter) {
    writeFile(package_ / ".DS_Store", "x");
    writeFile(package_ / "vconf/._Vconf.json", "x");
    writeFile(package_ / "System Volume Information/x", "x");
    EXPECT_EQ(status(), 0);
}

}  // namespace
}  // namespace vxclone
