#include "cloning_app/run/library_run.h"

#include <gmock/gmock.h>

#include <chrono>
#include <csignal>
#include <future>

#include "cloning_app/television/settings_store.h"
#include "tests/unit/cloning_app/fake_settings_store.h"
#include "tests/unit/cloning_app/recording_view.h"

namespace vxclone {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr std::chrono::seconds kPatience{20};
const std::vector<VXClone> kList = {VXCLONE_AV_SETTINGS, VXCLONE_VCONF_DATA, VXCLONE_BROADCAST_TVS};

/// Signals when it has shown an outcome and then the second step.
struct WaitedForView : RecordingView {
    void progress(const Progress& progress) override {
        RecordingView::progress(progress);
        if (steps.size() == 2) {
            shown.set_value();
        }
    }
    std::promise<void> shown;
};

/// The numbers of finished entries that were shown, one after the other.
std::vector<std::size_t> entriesOf(const RecordingView& view) {
    std::vector<std::size_t> entries;
    for (const Progress& step : view.steps) {
        entries.push_back(step.entry);
    }
    return entries;
}

class FollowerTest : public testing::Test {
 protected:
    FollowerTest() { store_.reset(); }

    void report(const std::string& results, int percent) {
        store_.set(kResultKey, results);
        store_.set(kProgressKey, percent);
    }

    FakeSettingsStore& store_ = FakeSettingsStore::instance();
    RecordingView view_;
    StopFlag stop_;
};

TEST_F(FollowerTest, resetForRestoreClearsWhatTheLastRunLeft) {
    ASSERT_TRUE(resetRunKeys(Direction::Restore));
    Follower follower(Direction::Restore, kList, view_, stop_);
    EXPECT_THAT(follower.finish().outcomes(), IsEmpty());
    EXPECT_THAT(entriesOf(view_), ElementsAre(0));
    EXPECT_EQ(std::get<int>(*store_.get(kProgressKey)), 0);
}

TEST_F(FollowerTest, resetForBackupLeavesTheProgressOfTheLastRestore) {
    ASSERT_TRUE(resetRunKeys(Direction::Backup));
    EXPECT_EQ(std::get<int>(*store_.get(kProgressKey)), 100);
    EXPECT_EQ(std::get<std::string>(*store_.get(kResultKey)), "");
}

TEST_F(FollowerTest, resetThatTheStoreRefusesIsAnError) {
    store_.refuseWriting(kProgressKey);
    EXPECT_TRUE(resetRunKeys(Direction::Backup));
    const auto progress = resetRunKeys(Direction::Restore);
    ASSERT_FALSE(progress);
    EXPECT_EQ(progress.error().code, ErrorCode::SettingsRefused);
    EXPECT_THAT(progress.error().sentence, HasSubstr(kProgressKey));
    store_.refuseWriting(kResultKey);
    EXPECT_FALSE(resetRunKeys(Direction::Backup));
}

TEST_F(FollowerTest, lastOutcomeIsReadAfterTheRun) {
    ASSERT_TRUE(resetRunKeys(Direction::Restore));
    Follower follower(Direction::Restore, kList, view_, stop_);
    report("VXCLONE_AV_SETTINGS-SUCCESS\n", 100);
    const ResultList results = follower.finish();
    ASSERT_EQ(results.outcomes().size(), 1U);
    ASSERT_EQ(view_.rows.size(), 1U);
    EXPECT_EQ(view_.rows[0].category, VXCLONE_AV_SETTINGS);
    EXPECT_EQ(view_.rows[0].verdict, Verdict::Done);
    EXPECT_THAT(entriesOf(view_), ElementsAre(0, 3));
}

TEST_F(FollowerTest, outcomeDuringTheRunIsShownBeforeItsEnd) {
    ASSERT_TRUE(resetRunKeys(Direction::Restore));
    WaitedForView view;
    auto shown = view.shown.get_future();
    Follower follower(Direction::Restore, kList, view, stop_);
    report("VXCLONE_AV_SETTINGS-FAIL\n", 33);
    ASSERT_EQ(shown.wait_for(kPatience), std::future_status::ready);
    follower.finish();
    EXPECT_THAT(entriesOf(view), ElementsAre(0, 1));
    EXPECT_EQ(view.rows.at(0).verdict, Verdict::Failed);
}

TEST_F(FollowerTest, percentThatFallsOrExceedsTheWholeIsNotShown) {
    ASSERT_TRUE(resetRunKeys(Direction::Restore));
    WaitedForView view;
    auto shown = view.shown.get_future();
    Follower follower(Direction::Restore, kList, view, stop_);
    report("VXCLONE_AV_SETTINGS-FAIL\n", 150);
    ASSERT_EQ(shown.wait_for(kPatience), std::future_status::ready);
    report("VXCLONE_AV_SETTINGS-FAIL\n", 20);
    follower.finish();
    EXPECT_THAT(entriesOf(view), ElementsAre(0, 3));
}

TEST_F(FollowerTest, backupCountsItsReportsAndPassesOverThePercentageOfTheLastRestore) {
    ASSERT_TRUE(resetRunKeys(Direction::Backup));
    Follower follower(Direction::Backup, allCategories(), view_, stop_);
    report("VXCLONE_FACTORY_SETTINGS-FAIL\n", 50);
    follower.finish();
    EXPECT_THAT(entriesOf(view_), ElementsAre(0, 1));
    EXPECT_EQ(view_.steps[1].phase, ShownPhase::Saving);
    EXPECT_EQ(view_.steps[1].part, 1.0 / static_cast<double>(view_.steps[1].entries));
    EXPECT_EQ(view_.rows.at(0).verdict, Verdict::NotEvaluated);
}

TEST_F(FollowerTest, percentTellsHowManyEntriesAreDoneAndWhichIsAtWork) {
    ASSERT_TRUE(resetRunKeys(Direction::Restore));
    Follower follower(Direction::Restore, kList, view_, stop_);
    report("", 33);
    follower.finish();
    ASSERT_EQ(view_.steps.size(), 2U);
    EXPECT_EQ(view_.steps[0].category, VXCLONE_AV_SETTINGS);
    EXPECT_EQ(view_.steps[1].entry, 1U);
    EXPECT_EQ(view_.steps[1].entries, 3U);
    EXPECT_EQ(view_.steps[1].category, VXCLONE_VCONF_DATA);
    EXPECT_EQ(view_.steps[1].phase, ShownPhase::Load);
    EXPECT_DOUBLE_EQ(view_.steps[1].part, 1.0 / 3);
    EXPECT_EQ(view_.steps[1].percent, std::nullopt);
}

TEST_F(FollowerTest, everyNumberOfEntriesIsFoundAgainFromItsPercentage) {
    for (std::size_t entries = 1; entries <= kCategoryCount; ++entries) {
        std::vector<VXClone> list = allCategories();
        list.resize(entries);
        for (std::size_t done = 1; done <= entries; ++done) {
            RecordingView view;
            ASSERT_TRUE(resetRunKeys(Direction::Restore));
            Follower follower(Direction::Restore, list, view, stop_);
            report("", static_cast<int>(100 * done / entries));
            follower.finish();
            EXPECT_EQ(view.steps.back().entry, done) << "of " << entries;
        }
    }
}

TEST_F(FollowerTest, backupCountsEachReportedCategoryOnce) {
    ASSERT_TRUE(resetRunKeys(Direction::Backup));
    Follower follower(Direction::Backup, allCategories(), view_, stop_);
    report("VXCLONE_AV_SETTINGS-SUCCESS\nVXCLONE_AV_SETTINGS-FAIL\nVXCLONE_BROADCAST_TVS-SUCCESS\n", 0);
    follower.finish();
    EXPECT_EQ(view_.steps.back().entry, 2U);
    EXPECT_EQ(view_.steps.back().category, VXCLONE_BROADCAST_TVS);
    EXPECT_LT(view_.steps.back().entries, kCategoryCount);
}

TEST_F(FollowerTest, stopDuringTheRunIsAnsweredOnce) {
    ASSERT_TRUE(resetRunKeys(Direction::Backup));
    stop_.raise(SIGINT);
    Follower follower(Direction::Backup, allCategories(), view_, stop_);
    follower.finish();
    ASSERT_EQ(view_.notices.size(), 1U);
    EXPECT_THAT(view_.notices[0], HasSubstr("cannot be interrupted"));
}

}  // namespace
}  // namespace vxclone
