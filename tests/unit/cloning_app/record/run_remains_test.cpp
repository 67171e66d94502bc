#include "cloning_app/record/run_remains.h"

#include <gmock/gmock.h>

namespace vxclone {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kUnchanged = "nothing was changed; start again when ready";
constexpr const char* kOldOrNew = "the stick holds the old package or the new one, whole; back up again";
constexpr const char* kHalf = "the load had begun, so the television may be half changed; ";
constexpr const char* kLoaded = "everything was loaded, only the read-back is missing; ";

RunRecord recordOf(RunKind kind, RunPhase phase, bool wayBack = true) {
    RunRecord record;
    record.kind = kind;
    record.phase = phase;
    record.package = kind == RunKind::Undo ? "" : "/media/usb/clone";
    record.begun = 1'800'000'000;
    record.wayBack = wayBack;
    record.halfChanged = phase == RunPhase::Restoring || phase == RunPhase::ReadingBack;
    record.allLoaded = phase == RunPhase::ReadingBack;
    return record;
}

/// The same run after its end.
RunRecord ended(RunRecord record, int exitStatus) {
    record.brokeOffIn = record.phase;
    record.phase = RunPhase::Done;
    record.ended = record.begun + 60;
    record.exitStatus = exitStatus;
    return record;
}

struct Left {
    RunKind kind;
    RunPhase phase;
    bool wayBack;
    std::string died;
    std::string stopped;
};

TEST(RunRemainsTest, everyPhaseOfEveryRunSaysWhatItLeftAndWhatToDo) {
    using K = RunKind;
    using P = RunPhase;
    const std::string undo = "restore again, or go back with vxclone undo";
    const std::string compare = "restore again to have it compared";
    for (const Left& left : std::vector<Left>{
             {K::Backup, P::Saving, false, kUnchanged, kUnchanged},
             {K::Backup, P::Writing, false, kOldOrNew, kUnchanged},
             {K::Restore, P::Staging, false, kUnchanged, kUnchanged},
             {K::Restore, P::Safety, false, kUnchanged, kUnchanged},
             {K::Restore, P::Restoring, true, kHalf + undo, kHalf + undo},
             {K::Restore, P::Restoring, false, kHalf + std::string("restore again"),
              kHalf + std::string("restore again")},
             {K::Restore, P::ReadingBack, true, kLoaded + compare + ", or go back with vxclone undo",
              kLoaded + compare + ", or go back with vxclone undo"},
             {K::Restore, P::ReadingBack, false, kLoaded + compare, kLoaded + compare},
             {K::Undo, P::Staging, true, kUnchanged, kUnchanged},
             {K::Undo, P::Restoring, true, kHalf + std::string("run vxclone undo again"),
              kHalf + std::string("run vxclone undo again")},
             {K::Undo, P::ReadingBack, true,
              kLoaded + std::string("run vxclone undo again to have it compared"),
              kLoaded + std::string("run vxclone undo again to have it compared")}}) {
        const RunRecord record = recordOf(left.kind, left.phase, left.wayBack);
        EXPECT_EQ(consequenceOf(record), left.died) << nameOf(left.phase);
        EXPECT_EQ(consequenceOf(ended(record, 8)), left.stopped) << nameOf(left.phase);
        EXPECT_TRUE(remainsOf(record) && remainsOf(ended(record, 8)));
    }
}

TEST(RunRemainsTest, loadThatFailedInPartIsNotCalledWhole) {
    RunRecord record = recordOf(RunKind::Restore, RunPhase::ReadingBack);
    record.rows = {{VXCLONE_AV_SETTINGS, Verdict::Done}, {VXCLONE_VXTV_TIMER_DATA, Verdict::Failed}};
    EXPECT_EQ(consequenceOf(record),
              "the load had ended (failed: timers), only the read-back is missing; restore again to have it "
              "compared, or go back with vxclone undo");
}

TEST(RunRemainsTest, runThatCameToItsEndLeavesNothing) {
    RunRecord done = ended(recordOf(RunKind::Restore, RunPhase::ReadingBack), 1);
    done.brokeOffIn.reset();
    done.halfChanged = false;
    EXPECT_FALSE(remainsOf(done));
    EXPECT_THAT(sentencesForTheNextStart(done), IsEmpty());
}

TEST(RunRemainsTest, errorBeforeTheLoadLeavesNothingAndOneDuringItIsTold) {
    EXPECT_FALSE(remainsOf(ended(recordOf(RunKind::Restore, RunPhase::Staging), 5)));
    EXPECT_FALSE(remainsOf(ended(recordOf(RunKind::Backup, RunPhase::Writing), 6)));
    EXPECT_EQ(remainsOf(ended(recordOf(RunKind::Restore, RunPhase::Restoring), 10)), Remains::HalfChanged);
}

TEST(RunRemainsTest, nextStartNamesTheRunThePhaseAndWhatIsLeft) {
    const std::string restore = "The restore from /media/usb/clone, begun 2027-01-15T08:00:00Z, ";
    EXPECT_THAT(sentencesForTheNextStart(recordOf(RunKind::Restore, RunPhase::Safety)),
                ElementsAre(restore + "broke off in phase safety: " + kUnchanged + "."));
    EXPECT_THAT(sentencesForTheNextStart(ended(recordOf(RunKind::Restore, RunPhase::Safety), 8)),
                ElementsAre(restore + "was stopped in phase safety: " + kUnchanged + "."));
    EXPECT_THAT(sentencesForTheNextStart(ended(recordOf(RunKind::Restore, RunPhase::Safety), 10)), IsEmpty());
    EXPECT_THAT(
        sentencesForTheNextStart(recordOf(RunKind::Undo, RunPhase::Restoring)),
        ElementsAre("The undo, begun 2027-01-15T08:00:00Z, broke off in phase restoring: the load had begun, "
                    "so the television may be half changed; run vxclone undo again."));
}

TEST(RunRemainsTest, earlierRunThatBrokeOffIsToldUntilAnotherLoads) {
    RunRecord backup = recordOf(RunKind::Backup, RunPhase::Saving);
    backup.halfChanged = true;
    EXPECT_THAT(
        sentencesForTheNextStart(backup),
        ElementsAre("The backup to /media/usb/clone, begun 2027-01-15T08:00:00Z, broke off in phase "
                    "saving: nothing was changed; start again when ready.",
                    "A restore or undo before it broke off: the load had begun, so the television may "
                    "be half changed; restore again, or go back with vxclone undo."));
    backup.allLoaded = true;
    backup.wayBack = false;
    EXPECT_EQ(sentenceAboutEarlier(backup),
              "A restore or undo before it broke off: everything was loaded, only the read-back is missing; "
              "restore again to have it compared.");
    EXPECT_FALSE(sentenceAboutEarlier(recordOf(RunKind::Restore, RunPhase::Restoring)));
    EXPECT_FALSE(sentenceAboutEarlier(recordOf(RunKind::Restore, RunPhase::Staging)));
}

TEST(RunRemainsTest, commandThatOnlyLooksHasChangedNothing) {
    EXPECT_EQ(consequenceOfLooking(), kUnchanged);
}

}  // namespace
}  // namespace vxclone
