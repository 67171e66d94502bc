// Messages about a run that was stopped: at its end, in the next command, and in status.

#include <gmock/gmock.h>

#include <algorithm>
#include <csignal>

#include "cloning_app/record/run_remains.h"
#include "cloning_app/record/status.h"
#include "tests/unit/cloning_app/verbs/restoring_test.h"

namespace vxclone {
namespace {

using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Lt;
using testing::Not;

constexpr const char* kNothingChanged = "nothing was changed; start again when ready";
constexpr const char* kOnlyReadBackIsMissing =
    "everything was loaded, only the read-back is missing; restore again to have it compared, or go back "
    "with vxclone undo";
constexpr const char* kUndoNotReadBack =
    "everything was loaded, only the read-back is missing; run vxclone undo again to have it compared";

class InterruptionTest : public RestoringTest {
 protected:
    /// Sends the signal when the phase is shown.
    void stopAt(ShownPhase phase, int signal) {
        view_.atProgress = [this, phase, signal](const Progress& progress) {
            if (progress.phase == phase) {
                stop_.raise(signal);
            }
        };
    }

    /// Checks what status and the next command say about the run that was stopped in the phase.
    void expectTold(const std::string& phase, const std::string& consequence) const {
        const RunRecord record = lastRun().record;
        const auto status = readStatus(data());
        ASSERT_TRUE(status);
        EXPECT_THAT(
            sentencesOf(*status),
            Contains("Last run: " + describe(record) + ", ended " + timeText(record.ended.value_or(0)) +
                     ": interrupted in phase " + phase + ": " + consequence + "."));
        EXPECT_THAT(noticesOfTheNextStart(), Contains("The " + describe(record) + ", was stopped in phase " +
                                                      phase + ": " + consequence + "."));
    }

    std::vector<std::string> noticesOfTheNextStart() const {
        FakeEngine engine;
        RecordingView view;
        const StopFlag none;
        EXPECT_TRUE(runVerify({engine, view, none, root_, disk_}, package_));
        return view.notices;
    }

    int statusExit() const { return outputOf(readStatus(data()).value()).exitStatus; }

    /// Another start of the program, which is not stopped.
    Result<Report> anew(const std::function<Result<Report>(const CloneContext&)>& run) {
        const StopFlag none;
        RecordingView view;
        return run({engine_, view, none, root_, disk_});
    }
};

TEST_F(InterruptionTest, restoreStoppedBeforeTheLoadSaysThatNothingWasChanged) {
    stopAt(ShownPhase::Staging, SIGINT);
    const auto report = restore();
    ASSERT_FALSE(report);
    EXPECT_EQ(exitStatusOf(report.error().code), 8);
    EXPECT_EQ(report.error().sentence,
              "stopped by you before the end: nothing was changed; start again when ready");
    EXPECT_EQ(engine_.runs + engine_.backups, 0);
    EXPECT_EQ(volume(), 20);
    expectTold("staging", kNothingChanged);
    EXPECT_EQ(statusExit(), 0);
    EXPECT_THAT(view_.percents, Each(Lt(100)));
}

TEST_F(InterruptionTest, restoreStoppedDuringItsSafetyBackupSaysThatNothingWasChanged) {
    stopAt(ShownPhase::Safety, SIGTERM);
    const auto report = restore();
    ASSERT_FALSE(report);
    EXPECT_EQ(exitStatusOf(report.error().code), 8);
    EXPECT_EQ(report.error().sentence, "stopped before the end: nothing was changed; start again when ready");
    EXPECT_EQ(engine_.backups, 1);
    EXPECT_EQ(engine_.runs, 0);
    EXPECT_FALSE(hasSafety());
    EXPECT_EQ(volume(), 20);
    expectTold("safety", kNothingChanged);
}

TEST_F(InterruptionTest, restoreStoppedWhenItsSafetyBackupIsMadeDoesNotBeginToLoad) {
    view_.atProgress = [this](const Progress& progress) {
        // The save has ended. The rest of the safety backup is the sealing, which cannot be interrupted.
        if (progress.phase == ShownPhase::Safety && progress.entries == 0) {
            stop_.raise(SIGINT);
        }
    };
    const auto report = restore();
    ASSERT_FALSE(report);
    EXPECT_EQ(report.error().sentence,
              "stopped by you before the end: nothing was changed; start again when ready");
    EXPECT_EQ(engine_.runs, 0);
    EXPECT_FALSE(lastRun().record.halfChanged);
    expectTold("safety", kNothingChanged);
}

/// The load cannot be interrupted, so every stop from its beginning to the end of the read-back has the same
/// result.
struct LateStop {
    ShownPhase at;
    int signal;
    const char* sentence;
};

class LateStopTest : public InterruptionTest, public testing::WithParamInterface<LateStop> {};

TEST_P(LateStopTest, restoreEndsItsLoadAndSaysThatOnlyTheReadBackIsMissing) {
    stopAt(GetParam().at, GetParam().signal);
    const auto report = restore();
    ASSERT_TRUE(report) << report.error().sentence;
    EXPECT_EQ(report->exitStatus, 8);
    EXPECT_EQ(report->closing.back(), GetParam().sentence + std::string(": ") + kOnlyReadBackIsMissing + ".");
    EXPECT_THAT(report->closing, Not(Contains("Restored from " + package_.string() + ".")));
    EXPECT_EQ(engine_.runs, 1);
    EXPECT_EQ(volume(), 12);
    for (const Row& row : report->rows) {
        EXPECT_EQ(row.readBack, ReadBack::None);
    }
    EXPECT_THAT(view_.percents, Each(Lt(100)));
    EXPECT_EQ(statusExit(), 1);
    expectTold("reading-back", kOnlyReadBackIsMissing);
}

TEST_P(LateStopTest, restoreThatWasNotReadBackIsUndoneOrDoneAgainWithTheSameWayBack) {
    stopAt(GetParam().at, GetParam().signal);
    ASSERT_TRUE(restore());
    const auto safety = contentOf(data() / "Safety");
    ASSERT_TRUE(anew([this](const CloneContext& context) {
        return runRestore(context, package_, {allCategories(), false, true});
    }));
    EXPECT_EQ(contentOf(data() / "Safety"), safety);
    EXPECT_FALSE(lastRun().record.halfChanged);
    ASSERT_TRUE(anew([](const CloneContext& context) { return runUndo(context, true); }));
    EXPECT_EQ(volume(), 20);
    EXPECT_EQ(statusExit(), 0);
}

INSTANTIATE_TEST_SUITE_P(At, LateStopTest,
                         testing::Values(LateStop{ShownPhase::Load, SIGINT, "Stopped by you before the end"},
                                         LateStop{ShownPhase::LookingUp, SIGHUP, "The terminal went away"},
                                         LateStop{ShownPhase::ReadBack, SIGTERM, "Stopped before the end"}),
                         [](const auto& stop) {
                             std::string name(wordsOf(stop.param.at));
                             name.erase(std::remove(name.begin(), name.end(), ' '), name.end());
                             return name;
                         });

TEST_F(InterruptionTest, loadThatIsStoppedSaysThatItCannotBeInterruptedAndEndsWithWhatFailed) {
    const auto work = engine_.work;
    engine_.work = [this, work] {
        stop_.raise(SIGINT);
        work();
        FakeEngine::report("VXCLONE_VXTV_TIMER_DATA-FAIL\nVXCLONE_AV_SETTINGS-SUCCESS\n", 100);
    };
    const auto report = restore({{VXCLONE_VXTV_TIMER_DATA, VXCLONE_AV_SETTINGS}});
    ASSERT_TRUE(report) << report.error().sentence;
    EXPECT_THAT(view_.notices,
                Contains("The television cannot be interrupted now: vxclone stops when this run has ended."));
    EXPECT_EQ(report->exitStatus, 8);
    EXPECT_EQ(report->closing.back(),
              "Stopped by you before the end: the load had ended (failed: timers), only the read-back is "
              "missing; restore again to have it compared, or go back with vxclone undo.");
}

TEST_F(InterruptionTest, stopWhenAllIsReadBackEndsWithEightAndLeavesNothingMissing) {
    stopAt(ShownPhase::Closing, SIGINT);
    const auto report = restore();
    ASSERT_TRUE(report) << report.error().sentence;
    EXPECT_EQ(report->exitStatus, 8);
    EXPECT_THAT(report->closing,
                ElementsAre("Restored from " + package_.string() + ".", "To go back: vxclone undo.",
                            "Stopped as you asked, after the end of the run."));
    EXPECT_EQ(view_.percents.back(), 100);
    const RunRecord record = lastRun().record;
    EXPECT_FALSE(record.halfChanged);
    EXPECT_THAT(sentencesOf(readStatus(data()).value()),
                Contains("Last run: " + describe(record) + ", ended " + timeText(record.ended.value_or(0)) +
                         ": interrupted after its end: nothing is missing."));
    EXPECT_THAT(noticesOfTheNextStart(), ElementsAre("Checking the package."));
}

TEST_F(InterruptionTest, withoutAReadBackAStoppedLoadLacksNothing) {
    stopAt(ShownPhase::Load, SIGINT);
    RestoreOptions options{allCategories(), false, true};
    options.readBack = false;
    const auto report = restore(options);
    ASSERT_TRUE(report) << report.error().sentence;
    EXPECT_EQ(report->exitStatus, 8);
    EXPECT_EQ(report->closing.back(), "Stopped as you asked, after the end of the run.");
    EXPECT_FALSE(lastRun().record.halfChanged);
}

TEST_F(InterruptionTest, withoutASafetyBackupNobodyIsToldToGoBack) {
    stopAt(ShownPhase::Load, SIGINT);
    RestoreOptions options{allCategories(), false, true};
    options.safety = false;
    const auto report = restore(options);
    ASSERT_TRUE(report) << report.error().sentence;
    EXPECT_EQ(report->closing.back(),
              "Stopped by you before the end: everything was loaded, only the read-back is missing; restore "
              "again to have it compared.");
    EXPECT_THAT(report->closing, Not(Contains(HasSubstr("vxclone undo"))));
}

TEST_F(InterruptionTest, libraryThatBreaksOffSaysThatTheLoadHadBegun) {
    engine_.end = failure(ErrorCode::Internal, "the clone library broke off");
    RestoreOptions options{allCategories(), false, true};
    options.safety = false;
    const auto report = restore(options);
    ASSERT_FALSE(report);
    EXPECT_EQ(exitStatusOf(report.error().code), 10);
    EXPECT_EQ(report.error().sentence,
              "the clone library broke off; the load had begun, so the television may be half changed; "
              "restore again");
    EXPECT_EQ(statusExit(), 1);
    EXPECT_THAT(noticesOfTheNextStart(),
                Contains(HasSubstr("broke off in phase restoring: the load had begun")));
}

TEST_F(InterruptionTest, undoStoppedBeforeItsLoadSaysThatNothingWasChanged) {
    ASSERT_TRUE(restore());
    stopAt(ShownPhase::Staging, SIGINT);
    const auto report = runUndo(context(), true);
    ASSERT_FALSE(report);
    EXPECT_EQ(report.error().sentence,
              "stopped by you before the end: nothing was changed; start again when ready");
    EXPECT_EQ(volume(), 12);
    expectTold("staging", kNothingChanged);
}

TEST_F(InterruptionTest, undoStoppedWhileItLoadsOrReadsBackIsToBeRunAgain) {
    ASSERT_TRUE(restore());
    for (const ShownPhase phase : {ShownPhase::Load, ShownPhase::ReadBack}) {
        StopFlag stop;
        RecordingView view;
        view.atProgress = [&stop, phase](const Progress& progress) {
            if (progress.phase == phase) {
                stop.raise(SIGTERM);
            }
        };
        const auto report = runUndo({engine_, view, stop, root_, disk_}, true);
        ASSERT_TRUE(report) << report.error().sentence;
        EXPECT_EQ(report->exitStatus, 8);
        EXPECT_EQ(report->closing.back(), "Stopped before the end: " + std::string(kUndoNotReadBack) + ".");
        EXPECT_EQ(volume(), 20);
        EXPECT_EQ(statusExit(), 1);
        expectTold("reading-back", kUndoNotReadBack);
    }
    const auto again = anew([](const CloneContext& context) { return runUndo(context, true); });
    ASSERT_TRUE(again);
    EXPECT_EQ(again->exitStatus, 0);
    EXPECT_EQ(statusExit(), 0);
}

TEST_F(InterruptionTest, refusedRunAfterOneThatBrokeOffStillNamesThatOne) {
    dieWhileRestoring();
    stopAt(ShownPhase::Staging, SIGINT);
    ASSERT_FALSE(restore());
    const char* const earlier =
        "A restore or undo before it broke off: the load had begun, so the television may be half changed; "
        "restore again, or go back with vxclone undo.";
    EXPECT_THAT(sentencesOf(readStatus(data()).value()), Contains(earlier));
    EXPECT_THAT(noticesOfTheNextStart(), Contains(earlier));
    EXPECT_EQ(statusExit(), 1);
    Output look;
    nameUnfinishedRun(look, data());
    EXPECT_THAT(look.closing, ElementsAre(earlier));
}

TEST_F(InterruptionTest, backupStoppedWhileTheLibrarySavesSaysThatNothingWasChanged) {
    stopAt(ShownPhase::Saving, SIGHUP);
    const auto report = runBackup(context(), folder_ / "stick/new");
    ASSERT_FALSE(report);
    EXPECT_EQ(exitStatusOf(report.error().code), 8);
    EXPECT_EQ(report.error().sentence, "the terminal went away: nothing was changed; start again when ready");
    EXPECT_FALSE(std::filesystem::exists(folder_ / "stick/new"));
    expectTold("saving", kNothingChanged);
}

TEST_F(InterruptionTest, backupStoppedWhileItIsWrittenLeavesTheStickAsItWas) {
    const auto before = contentOf(folder_ / "stick");
    stopAt(ShownPhase::Writing, SIGINT);
    const auto report = runBackup(context(), package_);
    ASSERT_FALSE(report);
    EXPECT_EQ(report.error().sentence,
              "stopped by you before the end: nothing was changed; start again when ready");
    EXPECT_EQ(contentOf(folder_ / "stick"), before);
    expectTold("writing", kNothingChanged);
}

TEST_F(InterruptionTest, commandThatChangesNothingSaysSoWhenItIsStopped) {
    stop_.raise(SIGINT);
    RestoreOptions options{allCategories(), false, true};
    options.dryRun = true;
    for (const auto& report : {runVerify(context(), package_), restore(options)}) {
        ASSERT_FALSE(report);
        EXPECT_EQ(report.error().sentence,
                  "stopped by you before the end: nothing was changed; start again when ready");
    }
}

}  // namespace
}  // namespace vxclone
