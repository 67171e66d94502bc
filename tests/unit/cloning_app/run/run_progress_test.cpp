#include "cloning_app/run/run_progress.h"

#include <gmock/gmock.h>

#include <future>

#include "cloning_app/report/progress_view.h"
#include "tests/unit/cloning_app/recording_view.h"

namespace vxclone {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Le;
using testing::Pair;

constexpr std::chrono::seconds kLongEnough{20};

/// Begins every phase and finishes half of each.
void walkThrough(RunProgress& progress, const ShownPhases& phases) {
    for (const ShownPhase phase : phases) {
        progress.progress({phase});
        progress.progress({phase, 0.5});
    }
}

TEST(RunProgressTest, restoreHasOnePercentageOfAllItsPhases) {
    RecordingView view;
    RunProgress progress(view, phasesOfLoad(true, true));
    walkThrough(progress, phasesOfLoad(true, true));
    progress.complete();
    EXPECT_THAT(view.percents, ElementsAre(0, 7, 15, 30, 45, 59, 73, 74, 75, 85, 95, 97, 100));
}

TEST(RunProgressTest, phasesThatARunDoesNotHaveLeaveTheirShareToTheRest) {
    RecordingView view;
    RunProgress progress(view, phasesOfLoad(false, false));
    walkThrough(progress, phasesOfLoad(false, false));
    progress.complete();
    EXPECT_THAT(view.percents, ElementsAre(0, 15, 30, 58, 86, 88, 90, 95, 100));
}

TEST(RunProgressTest, backupHasThePhasesOfItsOwn) {
    RecordingView view;
    RunProgress progress(view, phasesOfBackup());
    walkThrough(progress, phasesOfBackup());
    progress.complete();
    EXPECT_THAT(view.percents, ElementsAre(0, 22, 45, 50, 55, 75, 95, 97, 100));
}

TEST(RunProgressTest, percentageNeverFallsWhateverIsTold) {
    RecordingView view;
    RunProgress progress(view, phasesOfLoad(true, true));
    progress.progress({ShownPhase::Load, 0.5});
    const int half = view.percents.back();
    progress.progress({ShownPhase::Load, 0.1});
    progress.progress({ShownPhase::Staging, 1});
    progress.progress({ShownPhase::Writing, 1});
    progress.progress({{}, 1});
    progress.progress({ShownPhase::Load, -7});
    EXPECT_THAT(view.percents, Each(half));
}

TEST(RunProgressTest, hundredPercentIsTheEndAlone) {
    RecordingView view;
    RunProgress progress(view, phasesOfBackup());
    progress.progress({ShownPhase::Closing, 1});
    progress.progress({ShownPhase::Closing, 5, 1, 1});
    EXPECT_THAT(view.percents, Each(Le(99)));
    progress.complete();
    EXPECT_EQ(view.percents.back(), 100);
    EXPECT_EQ(view.steps.back().phase, ShownPhase::Closing);
}

TEST(RunProgressTest, runThatBreaksOffNeverShowsThatAllIsDone) {
    RecordingView view;
    {
        RunProgress progress(view, phasesOfBackup());
        progress.progress({ShownPhase::Saving, 1});
    }
    EXPECT_THAT(view.percents, ElementsAre(45));
}

TEST(RunProgressTest, runWithoutPhasesShowsNoPercentage) {
    RecordingView view;
    RunProgress progress(view, {});
    progress.progress({ShownPhase::Staging, 1});
    progress.complete();
    EXPECT_THAT(view.percents, IsEmpty());
    EXPECT_EQ(view.steps.size(), 1U);
}

TEST(RunProgressTest, stepThatLooksTheSameIsShownOnce) {
    RecordingView view;
    RunProgress progress(view, phasesOfBackup());
    progress.progress({ShownPhase::Writing, 0.5});
    progress.progress({ShownPhase::Writing, 0.501});
    EXPECT_EQ(view.steps.size(), 1U);
    progress.progress({ShownPhase::Writing, 0.501, 1, 2});
    EXPECT_EQ(view.steps.size(), 2U);
}

TEST(RunProgressTest, whatIsShownIsTold) {
    RecordingView view;
    std::vector<std::pair<ShownPhase, int>> told;
    RunProgress progress(view, phasesOfBackup(),
                         [&told](ShownPhase phase, int percent) { told.emplace_back(phase, percent); });
    progress.progress({ShownPhase::Saving});
    progress.progress({ShownPhase::Writing, 0.5});
    progress.complete();
    EXPECT_THAT(told, ElementsAre(Pair(ShownPhase::Saving, 0), Pair(ShownPhase::Writing, 75),
                                  Pair(ShownPhase::Closing, 100)));
}

/// Each tick fails, as without memory. Signals the third time.
struct FailingView : RecordingView {
    void tick() override {
        RecordingView::tick();
        if (ticks == 3) {
            third.set_value();
        }
        throw std::bad_alloc();
    }
    std::promise<void> third;
};

TEST(RunProgressTest, timePassesInThePhaseThatTellsNothingAndInAViewThatFails) {
    FailingView view;
    auto third = view.third.get_future();
    RunProgress progress(view, phasesOfBackup());
    EXPECT_EQ(third.wait_for(kLongEnough), std::future_status::ready);
}

/// Detects whether two threads use it at the same time.
struct JealousView : RecordingView {
    void enter() {
        EXPECT_FALSE(busy.exchange(true));
        std::this_thread::yield();
        busy = false;
    }
    void progress(const Progress& /*progress*/) override { enter(); }
    void category(const Row& /*row*/) override { enter(); }
    void notice(const std::string& /*sentence*/) override { enter(); }
    void tick() override {
        enter();
        if (++ticks == 2) {
            ticked.set_value();
        }
    }
    std::atomic<bool> busy = false;
    std::promise<void> ticked;
};

TEST(RunProgressTest, viewIsCalledByOneThreadAtATime) {
    JealousView view;
    auto ticked = view.ticked.get_future();
    RunProgress progress(view, phasesOfBackup());
    std::atomic<bool> end = false;
    std::thread other([&] {
        for (double part = 0; !end; part += 0.001) {
            progress.progress({ShownPhase::Saving, part});
            progress.notice("here");
        }
    });
    while (ticked.wait_for(std::chrono::seconds(0)) != std::future_status::ready) {
        progress.category({VXCLONE_AV_SETTINGS, Verdict::Done});
    }
    end = true;
    other.join();
}

TEST(QuietViewTest, backupWithinARunIsAPhaseOfThat) {
    RecordingView view;
    RunProgress progress(view, phasesOfLoad(true, true));
    QuietView quiet(progress, ShownPhase::Safety);
    quiet.progress({ShownPhase::Saving, 0, 0, 10});
    quiet.progress({ShownPhase::Saving, 0.5, 5, 10});
    quiet.category({VXCLONE_AV_SETTINGS, Verdict::Done});
    quiet.progress({ShownPhase::Saving, 1, 10, 10});
    quiet.progress({ShownPhase::Sealing});
    EXPECT_THAT(view.percents, ElementsAre(15, 27, 39, 39));
    EXPECT_THAT(view.rows, IsEmpty());
    for (const Progress& step : view.steps) {
        EXPECT_EQ(step.phase, ShownPhase::Safety);
    }
}

}  // namespace
}  // namespace vxclone
