// The steps around the load of a package: record, safety backup, read-back, undo, kept identity, dry run.

#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/mount.h>

#include <algorithm>
#include <csignal>
#include <fstream>
#include <functional>
#include <ostream>

#include "cloning_app/record/run_record.h"
#include "cloning_app/run/library_run.h"
#include "cloning_app/run/safety_backup.h"
#include "cloning_app/run/staged_package.h"
#include "cloning_app/storage/safety_store.h"
#include "cloning_app/television/setting_kinds.h"
#include "cloning_app/television/settings_store.h"
#include "tests/unit/cloning_app/own_mounts.h"
#include "tests/unit/cloning_app/verbs/restoring_test.h"

namespace vxclone {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

class RunsTest : public RestoringTest {};

TEST_F(RunsTest, restoreKeepsASafetyBackupLoadsReadsBackAndIsRecorded) {
    const auto report = restore();
    ASSERT_TRUE(report) << report.error().sentence;
    EXPECT_EQ(report->exitStatus, 0);
    EXPECT_EQ(volume(), 12);
    EXPECT_EQ(engine_.backups, 2);
    EXPECT_EQ(textOf(rowFor(*report, VXCLONE_VCONF_DATA)), "done, read back: same: applied, 54 settings");
    EXPECT_THAT(report->closing, Contains("To go back: vxclone undo."));
    EXPECT_TRUE(hasSafety());
    EXPECT_THAT(readFile(data() / "Safety/vconf/Vconf.json"), HasSubstr("{\"int\":20}"));
    EXPECT_EQ(loaded_, contentOf(package_));
    EXPECT_TRUE(std::filesystem::is_empty(root_));
    EXPECT_EQ(lastRun().record.phase, RunPhase::Done);
    EXPECT_EQ(lastRun().record.exitStatus, 0);
    EXPECT_EQ(lastRun().record.digest, report->digest);
    EXPECT_FALSE(lastRun().record.halfChanged);
}

TEST_F(RunsTest, progressOfARestoreIsOnePercentageOfAllItsPhases) {
    ASSERT_TRUE(restore());
    EXPECT_THAT(shownOf(ShownPhase::Staging), ElementsAre(0, testing::_, 7));
    EXPECT_THAT(shownOf(ShownPhase::Safety), ElementsAre(15, 39, 39));
    EXPECT_THAT(shownOf(ShownPhase::Load), ElementsAre(45, 73));
    EXPECT_THAT(shownOf(ShownPhase::LookingUp), ElementsAre(73));
    EXPECT_THAT(shownOf(ShownPhase::ReadBack), ElementsAre(75, 91));
    EXPECT_THAT(shownOf(ShownPhase::Closing), ElementsAre(95, 100));
    EXPECT_TRUE(std::is_sorted(view_.percents.begin(), view_.percents.end()));
}

TEST_F(RunsTest, progressOfAnUndoHasNoSafetyBackup) {
    ASSERT_TRUE(restore());
    view_.steps.clear();
    ASSERT_TRUE(runUndo(context(), true));
    EXPECT_THAT(shownOf(ShownPhase::Safety), IsEmpty());
    EXPECT_THAT(shownOf(ShownPhase::Load), ElementsAre(21, 61));
    EXPECT_EQ(view_.steps.back().percent, 100);
}

TEST_F(RunsTest, otherProcessSeesTheSamePercentageWhileTheRunGoesOn) {
    std::optional<LastRun> seen;
    engine_.work = [this, &seen] { seen = lastRun(); };
    ASSERT_TRUE(restore());
    ASSERT_TRUE(seen && seen->progress);
    EXPECT_EQ(seen->progress->phase, ShownPhase::Load);
    EXPECT_EQ(seen->progress->percent, 45);
    EXPECT_FALSE(lastRun().progress);
}

TEST_F(RunsTest, resultListAfterTheReadBackIsThatOfTheRestore) {
    engine_.work = [] { FakeEngine::report("VXCLONE_VXTV_TIMER_DATA-FAIL\n", 100); };
    ASSERT_TRUE(restore());
    EXPECT_EQ(std::get<std::string>(*FakeSettingsStore::instance().get(kResultKey)),
              "VXCLONE_VXTV_TIMER_DATA-FAIL\n");
}

TEST_F(RunsTest, undoGoesBackAndCanBeDoneAgain) {
    ASSERT_TRUE(restore());
    for (int count = 0; count < 2; ++count) {
        set(kVolume, 12);
        const auto undone = runUndo(context(), true);
        ASSERT_TRUE(undone) << undone.error().sentence;
        EXPECT_EQ(undone->exitStatus, 0);
        EXPECT_EQ(volume(), 20);
        EXPECT_EQ(pin(), "1111");
        EXPECT_THAT(undone->closing, Contains(HasSubstr("before " + package_.string())));
    }
    EXPECT_TRUE(hasSafety());
    EXPECT_EQ(lastRun().record.kind, RunKind::Undo);
}

TEST_F(RunsTest, undoTakesFilesAwayThatTheRestorePutIntoTheHomeMenu) {
    FakePaths::instance().homeMenu = folder_ / "menu";
    writeFile(folder_ / "menu/own.jpg", "own");
    writeFile(package_ / "VXHotel/own.jpg", "new");
    writeFile(package_ / "VXHotel/added.jpg", "added");
    writeFile(package_ / "VXHotel/changed.jpg", "added");
    sealFolder(package_);
    const auto save = engine_.save;
    engine_.save = [this, save] {
        save();
        std::filesystem::copy(folder_ / "menu", root_ / "VXHotel", std::filesystem::copy_options::recursive);
    };
    const auto work = engine_.work;
    engine_.work = [this, work] {
        work();
        std::filesystem::copy(
            root_ / "VXHotel", folder_ / "menu",
            std::filesystem::copy_options::overwrite_existing | std::filesystem::copy_options::recursive);
    };
    const auto report = restore();
    ASSERT_TRUE(report) << report.error().sentence;
    ASSERT_EQ(report->exitStatus, 0) << textOf(rowFor(*report, VXCLONE_VXHOTEL_HOMEAPP_DATA))
                                     << failedNames(report->rows);
    writeFile(folder_ / "menu/changed.jpg", "by a person");
    const auto undone = runUndo(context(), true);
    ASSERT_TRUE(undone) << undone.error().sentence;
    EXPECT_EQ(undone->exitStatus, 0);
    EXPECT_EQ(contentOf(folder_ / "menu"),
              (std::map<std::string, std::string>{{"own.jpg", "own"}, {"changed.jpg", "by a person"}}));
    EXPECT_THAT(rowFor(*undone, VXCLONE_VXHOTEL_HOMEAPP_DATA).detail, HasSubstr("taken away, 1 file"));
}

TEST_F(RunsTest, undoWithoutASafetyBackupSaysSoAndTouchesNothing) {
    const auto undone = runUndo(context(), true);
    ASSERT_FALSE(undone);
    EXPECT_EQ(undone.error().code, ErrorCode::NoSafetyBackup);
    EXPECT_EQ(engine_.runs, 0);
}

TEST_F(RunsTest, undoOfAnAlteredSafetyBackupIsRefused) {
    ASSERT_TRUE(restore());
    writeWhole(data() / "Safety", 99, "1111");
    const auto undone = runUndo(context(), true);
    ASSERT_FALSE(undone);
    EXPECT_EQ(undone.error().code, ErrorCode::Altered);
    EXPECT_EQ(volume(), 12);
}

TEST_F(RunsTest, undoTakesABootLogoAwayThatTheTelevisionDidNotHave) {
    FakePaths::instance().bootLogo = folder_ / "boot";
    ASSERT_TRUE(restore());
    writeFile(folder_ / "boot/logo.png", "new");
    engine_.work = [this] {
        std::filesystem::remove_all(folder_ / "boot");
        loadSettings(root_);
        std::string reported = kWholeReport;
        FakeEngine::report(reported.replace(reported.find("LOGO-SUCCESS"), 12, "LOGO-FAIL"), 100);
    };
    const auto undone = runUndo(context(), true);
    ASSERT_TRUE(undone) << undone.error().sentence;
    EXPECT_THAT(engine_.list, Contains(VXCLONE_HOSPITALITY_LOGO));
    EXPECT_THAT(textOf(rowFor(*undone, VXCLONE_HOSPITALITY_LOGO)), HasSubstr("taken away"));
    EXPECT_EQ(undone->exitStatus, 0);
}

TEST_F(RunsTest, withoutSafetyNoneIsMade) {
    RestoreOptions options{allCategories(), false, true};
    options.safety = false;
    ASSERT_TRUE(restore(options));
    EXPECT_EQ(engine_.backups, 1);
    EXPECT_FALSE(hasSafety());
}

TEST_F(RunsTest, safetyBackupThatFailsKeepsTheRestoreFromBeginning) {
    ASSERT_TRUE(restore());
    const auto safety = contentOf(data() / "Safety");
    engine_.runs = 0;
    engine_.save = [this] { writeFile(root_ / "vconf/Vconf.json", ""); };
    const auto report = restore();
    ASSERT_FALSE(report);
    EXPECT_EQ(report.error().code, ErrorCode::SettingsNotSaved);
    EXPECT_THAT(report.error().sentence, HasSubstr("--no-safety"));
    EXPECT_EQ(engine_.runs, 0);
    EXPECT_EQ(contentOf(data() / "Safety"), safety);
    EXPECT_TRUE(std::filesystem::is_empty(root_));
    EXPECT_FALSE(std::filesystem::exists(data() / "Clone.aside"));
}

TEST_F(RunsTest, safetyBackupThatLacksAChosenCategoryKeepsTheRestoreFromBeginning) {
    const auto save = engine_.save;
    engine_.save = [save] {
        save();
        FakeEngine::report("VXCLONE_VXTV_TIMER_DATA-FAIL\n", 0);
    };
    const auto report = restore();
    ASSERT_FALSE(report);
    EXPECT_EQ(report.error().code, ErrorCode::SafetyIncomplete);
    EXPECT_THAT(report.error().sentence, HasSubstr("lacks timers"));
    EXPECT_TRUE(restore({{VXCLONE_AV_SETTINGS}}));
}

TEST_F(RunsTest, safetyBackupThatIsNotCompleteIsMadeOnceMore) {
    for (const char* const missing :
         {"factory.backup", "org.vorta.orvel-app", "tvs-chms/hotel-channels.backup"}) {
        const auto save = engine_.save;
        engine_.backups = 0;
        engine_.save = [this, save, missing] {
            save();
            if (engine_.backups == 1) {
                std::filesystem::remove_all(root_ / missing);
            }
        };
        const auto report = restore();
        ASSERT_TRUE(report) << report.error().sentence;
        EXPECT_EQ(report->exitStatus, 0);
        EXPECT_EQ(engine_.backups, 3);
        EXPECT_TRUE(std::filesystem::exists(data() / "Safety" / missing));
        EXPECT_THAT(view_.notices, Contains("The safety backup is not complete; making it once more."));
        engine_.save = save;
    }
}

TEST_F(RunsTest, safetyBackupThatStaysIncompleteKeepsTheRestoreFromBeginning) {
    const auto save = engine_.save;
    engine_.save = [this, save] {
        save();
        writeFile(root_ / "vconf/Vconf.json", wholeSettings({{kVolume, ""}}));
        std::filesystem::remove(root_ / "factory.backup");
    };
    const auto report = restore();
    ASSERT_FALSE(report);
    EXPECT_EQ(report.error().code, ErrorCode::SafetyIncomplete);
    EXPECT_THAT(report.error().sentence,
                HasSubstr(std::string("it lacks factory, settings-keys (") + kVolume + ")"));
    EXPECT_THAT(report.error().sentence, HasSubstr("the restore did not begin and nothing was changed"));
    EXPECT_EQ(engine_.runs, 0);
    EXPECT_EQ(volume(), 20);
    EXPECT_FALSE(hasSafety());
    RestoreOptions options{allCategories(), false, true};
    options.without = *Declared::parse(std::string("factory,") + kVolume);
    EXPECT_TRUE(restore(options));
}

TEST_F(RunsTest, declaredNameThatTheSafetyBackupDoesNotLackIsSaidAndNoFailure) {
    const auto save = engine_.save;
    engine_.save = [this, save] {
        save();
        std::filesystem::remove(root_ / "factory.backup");
    };
    RestoreOptions options{allCategories(), false, true};
    options.without = *Declared::parse("factory,timers");
    ASSERT_TRUE(restore(options));
    EXPECT_THAT(view_.notices, Contains("--without names what is not lacking: timers."));
}

TEST_F(RunsTest, safetyBackupMayLackWhatTheRestoreLeavesAlone) {
    const auto save = engine_.save;
    engine_.save = [this, save] {
        save();
        std::filesystem::remove(root_ / "factory.backup");
    };
    EXPECT_TRUE(restore({{VXCLONE_AV_SETTINGS}}));
    engine_.save = save;
    const auto undone = runUndo(context(), true);
    ASSERT_TRUE(undone) << undone.error().sentence;
    EXPECT_EQ(undone->exitStatus, 0);
    EXPECT_EQ(rowFor(*undone, VXCLONE_FACTORY_SETTINGS).verdict, Verdict::NotThere);
    EXPECT_THAT(engine_.list, Not(Contains(VXCLONE_FACTORY_SETTINGS)));
}

TEST_F(RunsTest, televisionWithoutRoomForTheSafetyBackupIsToldBeforeAnythingIsMade) {
    const bool allowed = withOwnMounts([this] {
        std::filesystem::create_directories(data());
        const std::string size = "size=" + std::to_string(kRoomOfARun.bytes + (768U << 10U));
        ASSERT_EQ(mount("tmpfs", data().c_str(), "tmpfs", 0, size.c_str()), 0);
        FakePaths::instance().homeMenu = folder_ / "menu";
        writeFile(folder_ / "menu/film", std::string(900'000, 'f'));
        const auto report = restore();
        ASSERT_FALSE(report);
        EXPECT_EQ(report.error().code, ErrorCode::TelevisionFull);
        EXPECT_THAT(report.error().sentence, HasSubstr("--no-safety"));
        EXPECT_EQ(engine_.runs + engine_.backups, 0);
        RestoreOptions options{allCategories(), false, true};
        options.safety = false;
        EXPECT_TRUE(restore(options));
    });
    if (!allowed) {
        GTEST_SKIP() << "mounting is not allowed here";
    }
}

/// A television whose data folder is on a disk of its own.
class FullTelevisionTest : public RestoringTest {
 protected:
    /// Runs the body with that much more free room on this disk than a run needs.
    void onADisk(std::uint64_t bytes, const std::function<void()>& body) {
        const bool allowed = withOwnMounts([&] {
            std::filesystem::create_directories(data());
            const std::string size = "size=" + std::to_string(kRoomOfARun.bytes + bytes);
            ASSERT_EQ(mount("tmpfs", data().c_str(), "tmpfs", 0, size.c_str()), 0);
            body();
        });
        if (!allowed) {
            GTEST_SKIP() << "mounting is not allowed here";
        }
    }

    /// Fills this disk so that only `left` bytes stay free.
    void fill(std::uint64_t left) const {
        const auto room = std::filesystem::space(data()).available;
        ASSERT_GT(room, left);
        writeFile(data() / "filling", std::string(room - left, 'f'));
    }
};

constexpr std::uint64_t kPlenty = (std::uint64_t{2} << 20U) + kRoomForAnUndo;

TEST_F(FullTelevisionTest, roomForTheRunItselfIsAskedAlsoWithoutASafetyBackup) {
    onADisk(kPlenty, [this] {
        ASSERT_NO_FATAL_FAILURE(fill(kRoomOfARun.bytes));
        RestoreOptions options{allCategories(), false, true};
        options.safety = false;
        const auto report = restore(options);
        ASSERT_FALSE(report);
        EXPECT_EQ(report.error().code, ErrorCode::TelevisionFull);
        EXPECT_THAT(
            report.error().sentence,
            testing::ContainsRegex("and what a restore needs besides \\(6\\.3 MB\\) need 6\\.[0-9] MB, the "
                                   "television's disk has 6\\.3 MB free"));
        EXPECT_EQ(engine_.runs, 0);
        std::filesystem::remove(data() / "filling");
        EXPECT_TRUE(restore(options));
    });
}

TEST_F(FullTelevisionTest, diskThatRunsFullInTheMiddleIsSaid) {
    onADisk(kPlenty, [this] {
        engine_.work = [this] {
            fill(0);
            FakeEngine::report(kWholeReport, 100);
        };
        const auto report = restore();
        ASSERT_TRUE(report) << report.error().sentence;
        EXPECT_EQ(report->exitStatus, 1);
        EXPECT_THAT(
            report->closing,
            Contains("The television's disk ran full while the package was loaded: free some space on "
                     "the television, and go back with vxclone undo or restore again."));
    });
}

TEST_F(FullTelevisionTest, undoNeedsNoRoomAndLeavesTheSafetyBackupAsItIs) {
    writeFile(folder_ / "own/factory.backup", std::string(300'000, 'f'));
    const auto save = engine_.save;
    engine_.save = [this, save] {
        save();
        std::error_code full;
        std::filesystem::copy_file(folder_ / "own/factory.backup", root_ / "factory.backup",
                                   std::filesystem::copy_options::overwrite_existing, full);
    };
    onADisk(kPlenty, [this] {
        ASSERT_TRUE(restore());
        const auto safety = contentOf(data() / "Safety");
        writeFile(root_ / "of-a-restore-that-died", std::string(40'000, 'x'));
        ASSERT_NO_FATAL_FAILURE(fill(0));
        for (int count = 0; count < 2; ++count) {
            set(kVolume, 12);
            const auto undone = runUndo(context(), false);
            ASSERT_TRUE(undone) << undone.error().sentence;
            EXPECT_EQ(undone->exitStatus, 0);
            EXPECT_EQ(volume(), 20);
            EXPECT_EQ(loaded_, safety);
            EXPECT_EQ(contentOf(data() / "Safety"), safety);
            EXPECT_TRUE(std::filesystem::is_empty(root_)) << "a second name of the safety backup's files";
        }
        const auto readBack = runUndo(context(), true);
        ASSERT_TRUE(readBack) << readBack.error().sentence;
        EXPECT_EQ(contentOf(data() / "Safety"), safety);
    });
}

TEST_F(FullTelevisionTest, undoOfATelevisionThatIsFullByThenHasTheRoomThatTheRestoreTook) {
    onADisk(kPlenty, [this] {
        ASSERT_TRUE(restore());
        EXPECT_EQ(std::filesystem::file_size(data() / "Safety.room"), kRoomForAnUndo);
        ASSERT_NO_FATAL_FAILURE(fill(0));
        bool written = false;
        const auto work = engine_.work;
        engine_.work = [&] {
            std::ofstream journal(data() / "journal");
            written =
                bool(journal << std::string(kRoomForAnUndo - (std::uint64_t{256} << 10U), 'j') << std::flush);
            work();
        };
        const auto undone = runUndo(context(), true);
        ASSERT_TRUE(undone) << undone.error().sentence;
        EXPECT_EQ(undone->exitStatus, 0);
        EXPECT_TRUE(written);
        EXPECT_EQ(volume(), 20);
        std::filesystem::remove(data() / "filling");
        std::filesystem::remove(data() / "journal");
        ASSERT_TRUE(restore());
        EXPECT_EQ(std::filesystem::file_size(data() / "Safety.room"), kRoomForAnUndo);
    });
}

TEST_F(FullTelevisionTest, undoWithRoomEnoughKeepsWhatTheRestoreTook) {
    onADisk(kPlenty, [this] {
        ASSERT_TRUE(restore());
        ASSERT_TRUE(runUndo(context(), true));
        EXPECT_EQ(std::filesystem::file_size(data() / "Safety.room"), kRoomForAnUndo);
    });
}

TEST_F(RunsTest, cloneFolderIsClosedToOthersAfterARestoreAndAnUndo) {
    RestoreOptions options{allCategories(), false, true};
    options.readBack = false;
    int during = 0;
    const auto work = engine_.work;
    engine_.work = [&] {
        during = modeOf(root_);
        work();
    };
    ASSERT_TRUE(restore(options));
    EXPECT_EQ(during, 0755);
    EXPECT_FALSE(std::filesystem::is_empty(root_));
    EXPECT_EQ(modeOf(root_), 0700);
    ASSERT_TRUE(runUndo(context(), false));
    EXPECT_EQ(modeOf(root_), 0700);
    const auto held = contentOf(root_);
    options.dryRun = true;
    std::filesystem::permissions(root_, static_cast<std::filesystem::perms>(0751));
    ASSERT_TRUE(restore(options));
    EXPECT_EQ(modeOf(root_), 0751);
    EXPECT_EQ(contentOf(root_), held);
}

class ForeignTextRestoreTest : public RestoringTest {
 protected:
    /// This television has another text with invalid bytes, which the library does not clone.
    ForeignTextRestoreTest() {
        set(kTitle, kBytes);
        const auto save = engine_.save;
        engine_.save = [this, save] {
            save();
            writeFile(root_ / "vconf/Vconf.json",
                      wholeSettings({{kTitle, "\"caf\\ufffd\""}, {kVolume, std::to_string(volume())}}));
        };
    }

    static std::string title() { return store::readString(kTitle).value_or(""); }

    static constexpr const char* kTitle = "db/vxhotel/welmsg/welcomemsgtitle";
    static inline const std::string kBytes = "caf\xe9";
};

TEST_F(ForeignTextRestoreTest, restoreThatUndoCouldNotTakeBackDoesNotBegin) {
    const auto report = restore();
    ASSERT_FALSE(report);
    EXPECT_EQ(report.error().code, ErrorCode::SafetyIncomplete);
    EXPECT_EQ(report.error().sentence,
              std::string("the safety backup failed: it cannot hold ") + kTitle +
                  ", which is not UTF-8 text on this television, so undo could not bring it back (to restore "
                  "all the same: --without " +
                  kTitle +
                  "); the restore did not begin and nothing was changed (to go on without a safety backup: "
                  "--no-safety)");
    EXPECT_EQ(engine_.runs, 0);
    EXPECT_EQ(title(), kBytes);
    EXPECT_FALSE(hasSafety());
    EXPECT_TRUE(restore({{VXCLONE_AV_SETTINGS}})) << "settings are not chosen";
}

TEST_F(ForeignTextRestoreTest, ownTextThatNeitherPackageHoldsIsKeptByTheByte) {
    writeWholePackage(package_, {{kVolume, "12"}, {kTitle, ""}});
    sealFolder(package_);
    RestoreOptions options{allCategories(), false, true};
    options.without = *Declared::parse(kTitle);
    const auto report = restore(options);
    ASSERT_TRUE(report) << report.error().sentence;
    EXPECT_EQ(volume(), 12);
    EXPECT_EQ(title(), kBytes);
    EXPECT_THAT(readFile(data() / "Safety/vconf/Vconf.json"), Not(HasSubstr(kTitle)));
    ASSERT_TRUE(runUndo(context(), true));
    EXPECT_EQ(volume(), 20);
    EXPECT_EQ(title(), kBytes);
}

TEST_F(RunsTest, safetyReserveIsWhatTheTelevisionHasAndThePackageOfTheRest) {
    FakePaths::instance().homeMenu = folder_ / "menu";
    writeFile(folder_ / "menu/film", std::string(5000, 'f'));
    writeFile(folder_ / "other/VXHotel/film", std::string(70'000, 'f'));
    writeFile(folder_ / "other/tvs-chms/tvs-chms.zip", std::string(300, 'c'));
    const auto path = (folder_ / "other").string();
    const Descriptor package(open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    EXPECT_EQ(safetyReserve({package.get(), path, Place::Stick}).bytes, 5300U);
}

TEST_F(RunsTest, stopDuringTheSafetyBackupEndsBeforeTheTelevisionIsTouched) {
    const auto save = engine_.save;
    engine_.save = [this, save] {
        save();
        stop_.raise(SIGINT);
    };
    const auto report = restore();
    ASSERT_FALSE(report);
    EXPECT_EQ(report.error().code, ErrorCode::Interrupted);
    EXPECT_EQ(engine_.runs, 0);
    EXPECT_FALSE(hasSafety());
    EXPECT_TRUE(std::filesystem::is_empty(root_));
}

TEST_F(RunsTest, restoreThatChangesNothingThoughReportedIsNotApplied) {
    writeFile(package_ / "picture-and-sound.backup", "new");
    sealFolder(package_);
    const auto save = engine_.save;
    engine_.save = [this, save] {
        save();
        writeFile(root_ / "picture-and-sound.backup", "old");
    };
    const auto report = restore();
    ASSERT_TRUE(report) << report.error().sentence;
    EXPECT_EQ(report->exitStatus, 1);
    EXPECT_EQ(rowFor(*report, VXCLONE_AV_SETTINGS).verdict, Verdict::NotApplied);
    EXPECT_THAT(report->closing, Contains(HasSubstr("not all of it (failed or different: av)")));
    ASSERT_EQ(report->differences.list.size(), 1U);
}

TEST_F(RunsTest, televisionThatCannotBeReadBackIsNoSuccess) {
    RestoreOptions options{allCategories(), false, true};
    options.safety = false;
    engine_.save = [this] { writeFile(root_ / "vconf/Vconf.json", ""); };
    const auto report = restore(options);
    ASSERT_TRUE(report);
    EXPECT_EQ(report->exitStatus, 1);
    EXPECT_THAT(textOf(rowFor(*report, VXCLONE_VCONF_DATA)),
                HasSubstr("done, cannot be read back: applied, 54 settings; not read again: "));
}

TEST_F(RunsTest, keptIdentityIsTheTelevisionsOwnAfterwards) {
    RestoreOptions options{allCategories(), false, true};
    options.keepIdentity = true;
    const auto report = restore(options);
    ASSERT_TRUE(report) << report.error().sentence;
    EXPECT_EQ(pin(), "1111");
    EXPECT_EQ(volume(), 12);
    EXPECT_EQ(report->exitStatus, 0);
    EXPECT_EQ(rowFor(*report, VXCLONE_VCONF_DATA).detail, "applied, 43 settings; kept, 11 settings");
}

TEST_F(RunsTest, identityThatCannotBeWrittenBackFailsTheSettings) {
    RestoreOptions options{allCategories(), false, true};
    options.keepIdentity = true;
    const auto work = engine_.work;
    engine_.work = [work] {
        work();
        FakeSettingsStore::instance().refuseWriting(kPinSetting);
    };
    const auto report = restore(options);
    ASSERT_TRUE(report);
    EXPECT_EQ(report->exitStatus, 1);
    EXPECT_THAT(rowFor(*report, VXCLONE_VCONF_DATA).detail,
                HasSubstr(std::string("not kept: ") + kPinSetting));
}

/// A dry run. The television has another picture than the package, and an application has other data.
class DryRunTest : public RunsTest {
 protected:
    DryRunTest() {
        options_.dryRun = true;
        engine_.save = [this] {
            for (const auto& entry : std::filesystem::directory_iterator(root_)) {
                std::filesystem::remove_all(entry);
            }
            writeWhole(root_, volume(), pin());
            writeFile(root_ / "picture-and-sound.backup", "other");
            writeFile(root_ / "org.vorta.orvel-app/data", "other");
            FakeEngine::report(reported_, 0);
        };
    }

    static std::string wordsFor(const Report& report, VXClone category) {
        return textOf(rowFor(report, category));
    }

    RestoreOptions options_{allCategories(), false, true};
    std::string reported_ = kWholeReport;
};

TEST_F(DryRunTest, tellsTheDifferencesAndLeavesEverythingAsItWas) {
    writeFile(root_ / "of-the-last-run/file", "x");
    const auto before = contentOf(data());
    const auto report = restore(options_);
    ASSERT_TRUE(report) << report.error().sentence;
    EXPECT_EQ(report->exitStatus, 0);
    EXPECT_EQ(wordsFor(*report, VXCLONE_VCONF_DATA), "would be loaded: changes 2 settings");
    EXPECT_EQ(wordsFor(*report, VXCLONE_AV_SETTINGS), "would be loaded: changes 1 file");
    EXPECT_EQ(wordsFor(*report, VXCLONE_FACTORY_SETTINGS), "would be loaded: changes nothing");
    EXPECT_EQ(wordsFor(*report, VXCLONE_VXHOTEL_FIRSTSCREEN_DATA),
              "would be loaded: other bytes in 1 file, which only the application can compare");
    EXPECT_EQ(rowFor(*report, VXCLONE_VXHOTEL_FIRSTSCREEN_DATA).subject, "org.vorta.orvel-app");
    EXPECT_EQ(wordsFor(*report, VXCLONE_NTP_SETTINGS_DATA), "would be loaded");
    EXPECT_EQ(rowFor(*report, VXCLONE_VXHOTEL_AMBIENT_APP_DATA).verdict, Verdict::NotPossible);
    EXPECT_EQ(report->differences.list.size(), 4U);
    EXPECT_THAT(*report->notCompared, IsEmpty());
    EXPECT_THAT(report->closing, ElementsAre("This was a dry run: nothing was changed."));
    EXPECT_EQ(engine_.runs, 0);
    EXPECT_EQ(contentOf(data()), before);
    EXPECT_EQ(volume(), 20);
}

TEST_F(DryRunTest, leavesNoRecordAndTheKeysOfTheLastRun) {
    FakeEngine::report("VXCLONE_AV_SETTINGS-FAIL\n", 70);
    ASSERT_TRUE(restore(options_));
    EXPECT_EQ(engine_.backups, 1);
    EXPECT_FALSE(std::filesystem::exists(data() / "run.json"));
    EXPECT_EQ(store::readString(kResultKey), "VXCLONE_AV_SETTINGS-FAIL\n");
    EXPECT_EQ(store::readInt(kProgressKey), 70);
}

TEST_F(DryRunTest, showsOnePercentageAndNoCategoryOfTheBackup) {
    ASSERT_TRUE(restore(options_));
    EXPECT_TRUE(std::is_sorted(view_.percents.begin(), view_.percents.end()));
    EXPECT_EQ(view_.percents.back(), 100);
    EXPECT_THAT(shownOf(ShownPhase::Saving), Not(IsEmpty()));
    EXPECT_THAT(view_.rows, IsEmpty());
}

TEST_F(DryRunTest, keptIdentityIsNoChange) {
    options_.keepIdentity = true;
    EXPECT_EQ(rowFor(*restore(options_), VXCLONE_VCONF_DATA).detail, "changes 1 setting; keeps 11 settings");
}

TEST_F(DryRunTest, whatStaysBesideTheHomeMenuIsNoChange) {
    FakePaths::instance().homeMenu = folder_ / "menu";
    writeFile(folder_ / "menu/same", "a");
    writeFile(folder_ / "menu/other", "a");
    writeFile(package_ / "VXHotel/same", "a");
    sealFolder(package_);
    EXPECT_EQ(wordsFor(*restore(options_), VXCLONE_VXHOTEL_HOMEAPP_DATA), "would be loaded: changes nothing");
}

TEST_F(DryRunTest, whatThePackageLacksIsSaid) {
    std::filesystem::remove_all(package_ / "tvtimer");
    sealFolder(package_);
    const auto report = restore(options_);
    ASSERT_TRUE(report);
    EXPECT_EQ(rowFor(*report, VXCLONE_VXTV_TIMER_DATA).verdict, Verdict::Lacking);
    EXPECT_THAT(report->closing, Contains("The package is not complete. It lacks: timers."));
    EXPECT_EQ(report->lacks.size(), 1U);
}

TEST_F(DryRunTest, categoryThatCouldNotBeSavedIsNotComparedAndNoSuccess) {
    reported_.replace(reported_.find("AV_SETTINGS-SUCCESS"), 19, "AV_SETTINGS-FAIL");
    const auto report = restore(options_);
    ASSERT_TRUE(report);
    EXPECT_EQ(report->exitStatus, 1);
    EXPECT_EQ(wordsFor(*report, VXCLONE_AV_SETTINGS),
              "would be loaded: not compared: the television could not save it");
    EXPECT_THAT(*report->notCompared, ElementsAre("av"));
    EXPECT_THAT(report->closing, Contains("Not compared, because the television could not save it: av."));
    options_.list = {VXCLONE_VCONF_DATA};
    options_.everything = false;
    EXPECT_EQ(restore(options_)->exitStatus, 0) << "what is not chosen need not be compared";
}

TEST_F(DryRunTest, quickOneAsksNoLibraryAndSaysWhatItDidNotCompare) {
    options_.quick = true;
    const auto report = restore(options_);
    ASSERT_TRUE(report);
    EXPECT_EQ(report->exitStatus, 0);
    EXPECT_EQ(engine_.backups + engine_.runs, 0);
    EXPECT_EQ(wordsFor(*report, VXCLONE_AV_SETTINGS), "would be loaded");
    EXPECT_EQ(wordsFor(*report, VXCLONE_VCONF_DATA), "would be loaded: changes 2 settings");
    EXPECT_THAT(*report->notCompared,
                ElementsAre("apps", "av", "channels", "factory", "home-data", "settings", "timers", "was"));
    EXPECT_THAT(report->closing,
                ElementsAre("Not compared, because of --quick: apps (org.vorta.orvel-app), av, channels, "
                            "factory, home-data, settings, timers, was.",
                            "This was a dry run: nothing was changed."));
}

TEST_F(DryRunTest, roomIsJudgedAsTheRestoreWouldFindItWithTheCloneFolderEmptied) {
    const bool allowed = withOwnMounts([this] {
        std::filesystem::create_directories(data());
        const std::string size =
            "size=" + std::to_string(kRoomOfARun.bytes + kRoomForAnUndo + (1024U << 10U));
        ASSERT_EQ(mount("tmpfs", data().c_str(), "tmpfs", 0, size.c_str()), 0);
        FakePaths::instance().homeMenu = folder_ / "menu";
        writeFile(folder_ / "menu/film", std::string(400'000, 'f'));
        writeFile(root_ / "of-the-last-run", std::string(200'000, 'x'));
        const auto fits = restore(options_);
        EXPECT_TRUE(fits) << fits.error().sentence;
        writeFile(folder_ / "menu/film", std::string(990'000, 'f'));
        const auto report = restore(options_);
        ASSERT_FALSE(report);
        EXPECT_EQ(report.error().code, ErrorCode::TelevisionFull);
        EXPECT_EQ(readFile(root_ / "of-the-last-run").size(), 200'000U);
    });
    if (!allowed) {
        GTEST_SKIP() << "mounting is not allowed here";
    }
}

TEST_F(RunsTest, partThatNeedsAnotherIsSaid) {
    ASSERT_TRUE(restore({{VXCLONE_NTP_SETTINGS_DATA}}));
    EXPECT_THAT(view_.notices, Contains(HasSubstr("network-time without settings-keys")));
    view_.notices.clear();
    ASSERT_TRUE(restore());
    EXPECT_THAT(view_.notices, Not(Contains(HasSubstr(" without "))));
}

TEST_F(RunsTest, runThatDiedIsNamedAndDoesNotBlock) {
    dieWhileRestoring();
    ASSERT_TRUE(runBackup(context(), folder_ / "stick/new"));
    EXPECT_THAT(view_.notices, Contains(testing::AllOf(HasSubstr("/media/usb/old"), HasSubstr("vxclone undo"),
                                                       HasSubstr("restoring"))));
    EXPECT_TRUE(lastRun().record.halfChanged);
}

TEST_F(RunsTest, safetyBackupFromBeforeARunThatDiedIsKept) {
    ASSERT_TRUE(restore());
    const auto safety = contentOf(data() / "Safety");
    dieWhileRestoring();
    set(kVolume, 5);
    ASSERT_TRUE(restore());
    EXPECT_EQ(contentOf(data() / "Safety"), safety);
    EXPECT_FALSE(lastRun().record.halfChanged);
    set(kVolume, 7);
    ASSERT_TRUE(restore());
    EXPECT_NE(contentOf(data() / "Safety"), safety);
}

/// What happens to the record after a run that died, or which run follows. The state before the first run
/// must be kept.
struct AfterADeath {
    const char* name;
    std::function<void(const std::filesystem::path& record)> happens;
    std::vector<VXClone> part;  ///< restored before the whole; none where nothing is
};

void PrintTo(const AfterADeath& after, std::ostream* out) {
    *out << after.name;
}

const AfterADeath kAfterADeath[] = {
    {"part", [](const auto&) {}, {VXCLONE_VXTV_TIMER_DATA}},
    {"damaged_record", [](const auto& record) { writeFile(record, "{"); }, {}},
    {"no_record", [](const auto& record) { std::filesystem::remove(record); }, {}},
    {"damaged_mark",
     [](const auto& record) {
         writeFile(record.parent_path() / "Safety.needed", std::string("way-back\n\xff\n"));
     },
     {}},
};

class SafetyAfterADeathTest : public RunsTest, public testing::WithParamInterface<AfterADeath> {};

TEST_P(SafetyAfterADeathTest, isKeptUntilAWholeRunHasComeToItsEnd) {
    ASSERT_TRUE(restore());
    const auto safety = contentOf(data() / "Safety");
    dieWhileRestoring();
    set(kVolume, 5);
    GetParam().happens(data() / "run.json");
    if (!GetParam().part.empty()) {
        RestoreOptions options{GetParam().part};
        options.everything = false;
        ASSERT_TRUE(restore(options));
        EXPECT_EQ(contentOf(data() / "Safety"), safety);
        EXPECT_TRUE(lastRun().record.halfChanged);
    }
    ASSERT_TRUE(restore());
    EXPECT_EQ(contentOf(data() / "Safety"), safety);
    EXPECT_FALSE(lastRun().record.halfChanged);
    EXPECT_FALSE(std::filesystem::exists(data() / "Safety.needed"));
    set(kVolume, 7);
    ASSERT_TRUE(restore());
    EXPECT_NE(contentOf(data() / "Safety"), safety);
}

INSTANTIATE_TEST_SUITE_P(After, SafetyAfterADeathTest, testing::ValuesIn(kAfterADeath),
                         [](const auto& each) { return std::string(each.param.name); });

TEST_F(RunsTest, partThatDiedIsOverOnceThatPartIsLoaded) {
    ASSERT_TRUE(restore());
    {
        auto recorder = RunRecorder::begin(data(), {RunKind::Restore, RunPhase::Staging, "", "", 1});
        ASSERT_TRUE(recorder);
        recorder->setLoaded({VXCLONE_VXTV_TIMER_DATA});
        ASSERT_TRUE(recorder->enter(RunPhase::Restoring));
    }
    EXPECT_TRUE(lastRun().record.halfChanged);
    RestoreOptions options{{VXCLONE_VXTV_TIMER_DATA, VXCLONE_BROADCAST_TVS}};
    ASSERT_TRUE(restore(options));
    EXPECT_FALSE(lastRun().record.halfChanged);
}

TEST_F(RunsTest, ownFoldersAreNoTargetAndNoSourceUnderAnyName) {
    const bool allowed = withOwnMounts([this] {
        ASSERT_TRUE(restore());
        const auto before = contentOf(data());
        const auto other = folder_ / "other name";
        std::filesystem::create_directory(other);
        ASSERT_EQ(mount(data().c_str(), other.c_str(), nullptr, MS_BIND, nullptr), 0);
        std::filesystem::create_directory_symlink(data() / "Safety", folder_ / "link");
        for (const auto& own : {data() / "Safety", data() / "new", other / "Safety", other / "Safety/vconf",
                                folder_ / "link/new", data()}) {
            SCOPED_TRACE(own);
            for (const auto& report :
                 {runBackup(context(), own), runRestore(context(), own, {allCategories()})}) {
                ASSERT_FALSE(report);
                EXPECT_EQ(report.error().code, ErrorCode::BadArguments);
            }
        }
        auto after = contentOf(data());
        after["run.json"] = before.at("run.json");
        EXPECT_EQ(after, before);
    });
    if (!allowed) {
        GTEST_SKIP() << "mounting is not allowed here";
    }
}

TEST_F(RunsTest, libraryThatBreaksOffLeavesTheTelevisionHalfChanged) {
    RestoreOptions options{allCategories(), false, true};
    options.safety = false;
    engine_.end = failure(ErrorCode::Internal, "broke off");
    ASSERT_FALSE(restore(options));
    EXPECT_TRUE(lastRun().record.halfChanged);
    EXPECT_EQ(lastRun().record.exitStatus, 10);
}

TEST_F(RunsTest, secondRunIsRefusedAndToldWhatIsGoingOn) {
    auto other = RunRecorder::begin(data(), {RunKind::Restore, RunPhase::Staging, "/media/usb/other", "", 1});
    ASSERT_TRUE(other);
    for (const auto& report : {restore(), runBackup(context(), folder_ / "stick/new"),
                               runUndo(context(), true), runVerify(context(), package_)}) {
        ASSERT_FALSE(report);
        EXPECT_EQ(report.error().code, ErrorCode::TelevisionBusy);
        EXPECT_THAT(report.error().sentence, HasSubstr("restore from /media/usb/other"));
    }
    EXPECT_EQ(engine_.runs + engine_.backups, 0);
}

}  // namespace
}  // namespace vxclone
