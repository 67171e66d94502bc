#include "cloning_app/record/status.h"

#include <gmock/gmock.h>

#include <csignal>
#include <optional>
#include <sstream>

#include "cloning_app/television/kept_run_keys.h"
#include "cloning_app/television/settings_store.h"
#include "tests/unit/cloning_app/fake_settings_store.h"
#include "tests/unit/cloning_app/json_schema.h"
#include "tests/unit/cloning_app/recording_view.h"
#include "tests/unit/cloning_app/test_folder.h"

namespace vxclone {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

RunRecord recordOf(RunKind kind) {
    RunRecord record;
    record.kind = kind;
    record.package = "/media/usb/clone";
    record.begun = 1'800'000'000;
    return record;
}

class StatusTest : public testing::Test {
 protected:
    StatusTest() { store_.reset(); }

    Output output() const {
        const auto status = readStatus(folder_.path());
        EXPECT_TRUE(status) << status.error().sentence;
        return outputOf(*status);
    }

    FakeSettingsStore& store_ = FakeSettingsStore::instance();
    TestFolder folder_;
    RecordingView view_;
    StopFlag stop_;
};

TEST_F(StatusTest, statusWithoutARecordIsThatOfTheTwoKeys) {
    const Output said = output();
    EXPECT_EQ(said.exitStatus, 0);
    EXPECT_THAT(said.closing, Contains("Progress of the last restore: 100 %."));
    EXPECT_THAT(said.closing, Contains("No run is recorded."));
    std::ostringstream out;
    sayOutput(said, false, {out}, {out});
    EXPECT_THAT(out.str(), HasSubstr("picture and sound"));
}

TEST_F(StatusTest, unfinishedRunIsNamedWithWhatToDoAndIsAFailure) {
    {
        auto recorder = RunRecorder::begin(folder_.path(), recordOf(RunKind::Restore));
        ASSERT_TRUE(recorder);
        recorder->setWayBack();
        ASSERT_TRUE(recorder->enter(RunPhase::Restoring));
    }
    const Output said = output();
    EXPECT_EQ(said.exitStatus, 1);
    EXPECT_EQ(
        said.closing.back(),
        "UNFINISHED: restore from /media/usb/clone, begun 2027-01-15T08:00:00Z; it died in phase "
        "restoring: the load had begun, so the television may be half changed; restore again, or go back "
        "with vxclone undo.");
}

TEST_F(StatusTest, commandThatOnlyLooksNamesAnUnfinishedRunAndKeepsItsExitStatus) {
    Output found;
    nameUnfinishedRun(found, folder_.path());
    EXPECT_THAT(found.closing, IsEmpty());
    {
        auto recorder = RunRecorder::begin(folder_.path(), recordOf(RunKind::Restore));
        ASSERT_TRUE(recorder && recorder->enter(RunPhase::Restoring));
        nameUnfinishedRun(found, folder_.path());
        EXPECT_THAT(found.closing, IsEmpty());
    }
    nameUnfinishedRun(found, folder_.path());
    EXPECT_THAT(found.closing, ElementsAre(output().closing.back()));
    EXPECT_EQ(found.exitStatus, 0);
}

TEST_F(StatusTest, runThatEndedIsToldWithItsTimesAndStatus) {
    {
        auto recorder = RunRecorder::begin(folder_.path(), recordOf(RunKind::Backup));
        ASSERT_TRUE(recorder && recorder->end(6, {}));
    }
    EXPECT_EQ(output().exitStatus, 0);
    EXPECT_THAT(output().closing.back(), HasSubstr("backup to /media/usb/clone, begun 2027-01-15T08:00:00Z"));
    EXPECT_THAT(output().closing.back(), HasSubstr("ended "));
    EXPECT_THAT(output().closing.back(), HasSubstr(": the stick or the disk is full, read-only or gone."));
}

TEST_F(StatusTest, everyPhaseAndKindFitsTheSchemaOfTheLines) {
    for (const RunKind kind : {RunKind::Backup, RunKind::Restore, RunKind::Undo}) {
        for (int phase = 0; phase < static_cast<int>(RunPhase::Done); ++phase) {
            std::ostringstream out;
            for (const bool brokeOff : {true, false}) {
                auto recorder = RunRecorder::begin(folder_.path(), recordOf(kind));
                ASSERT_TRUE(recorder && recorder->enter(static_cast<RunPhase>(phase)));
                sayOutput(output(), true, {out}, {out});
                ASSERT_TRUE(brokeOff ? recorder->breakOff(8, {}) : recorder->end(0, {}));
                sayOutput(output(), true, {out}, {out});
            }
            for (const auto& line : jsonLines(out.str())) {
                EXPECT_THAT(schemaComplaint(line), IsEmpty());
            }
        }
    }
}

TEST_F(StatusTest, runThatGoesOnIsToldWithItsOwnPercentageAndNotThatOfTheLastRestore) {
    auto recorder = RunRecorder::begin(folder_.path(), recordOf(RunKind::Restore));
    ASSERT_TRUE(recorder && recorder->enter(RunPhase::Safety));
    recorder->tell({ShownPhase::Safety, 21});
    EXPECT_THAT(output().closing,
                ElementsAre("Going on: restore from /media/usb/clone, begun 2027-01-15T08:00:00Z; phase "
                            "safety, 21 %."));
    std::ostringstream out;
    sayOutput(output(), true, {out}, {out});
    const auto line = jsonLines(out.str()).at(0);
    EXPECT_THAT(schemaComplaint(line), IsEmpty());
    EXPECT_EQ(line, nlohmann::json::parse(R"({"version": 1, "event": "progress", "run": "restore",
        "phase": "safety", "percent": 21})"));
}

TEST_F(StatusTest, lookThatGoesOnIsToldAndTheKeysAreThoseOfTheLastRun) {
    const auto before = output().closing;
    const auto look = LookHold::begin(folder_.path());
    ASSERT_TRUE(look && keepRunKeys(folder_.path()));
    store_.set(kResultKey, std::string("VXCLONE_WAS_API_DATA-FAIL\n"));
    store_.set(kProgressKey, 0);
    auto expected = before;
    expected.emplace_back(
        "Going on: another vxclone looks at this television (diff, verify or a dry run), and changes "
        "nothing.");
    const Output said = output();
    EXPECT_EQ(said.closing, expected);
    EXPECT_EQ(said.exitStatus, 0);
    std::ostringstream out;
    sayOutput(said, true, {out}, {out});
    EXPECT_THAT(out.str(), testing::Not(HasSubstr("\"was\"")));
    const auto summary = jsonLines(out.str()).back();
    EXPECT_THAT(schemaComplaint(summary), IsEmpty());
    EXPECT_EQ(summary.at("looking"), true);
}

TEST_F(StatusTest, lookThatDiedLeavesTheKeysOfTheLastRun) {
    const auto before = output().closing;
    {
        const auto look = LookHold::begin(folder_.path());
        ASSERT_TRUE(look && keepRunKeys(folder_.path()));
    }
    store_.set(kResultKey, std::string("VXCLONE_WAS_API_DATA-FAIL\n"));
    store_.set(kProgressKey, 0);
    const Output said = output();
    EXPECT_EQ(said.closing, before);
    EXPECT_EQ(said.lines.at(1).members.at("category"), "av");
    EXPECT_TRUE(said.summary.is_null());
}

TEST_F(StatusTest, followOfNoRunEndsAtOnce) {
    EXPECT_TRUE(followRun(folder_.path(), view_, stop_));
    EXPECT_EQ(view_.ticks, 0);
}

/// Ends the run as soon as it is shown.
struct EndingView : RecordingView {
    void tick() override { recorder.reset(); }
    std::optional<RunRecorder> recorder;
};

TEST_F(StatusTest, followShowsTheRunAndEndsWithIt) {
    auto recorder = RunRecorder::begin(folder_.path(), recordOf(RunKind::Restore));
    ASSERT_TRUE(recorder && recorder->enter(RunPhase::Restoring));
    EndingView view;
    recorder->tell({ShownPhase::Load, 57});
    view.recorder.emplace(*std::move(recorder));
    store_.set(kProgressKey, 40);
    const auto status = followRun(folder_.path(), view, stop_);
    ASSERT_TRUE(status && status->last);
    EXPECT_TRUE(status->last->unfinished());
    EXPECT_THAT(view.percents, ElementsAre(57));
    EXPECT_EQ(view.steps.at(0).phase, ShownPhase::Load);
    EXPECT_EQ(view.rows.size(), 1U);
}

TEST_F(StatusTest, followShowsNothingThatTheKeysTellOfARunBefore) {
    auto recorder = RunRecorder::begin(folder_.path(), recordOf(RunKind::Restore));
    ASSERT_TRUE(recorder && recorder->enter(RunPhase::Safety));
    EndingView view;
    view.recorder.emplace(*std::move(recorder));
    ASSERT_TRUE(followRun(folder_.path(), view, stop_));
    EXPECT_THAT(view.percents, IsEmpty());
    EXPECT_THAT(view.rows, IsEmpty());
}

TEST_F(StatusTest, runThatEndedWithAFailureNamesIt) {
    {
        auto recorder = RunRecorder::begin(folder_.path(), recordOf(RunKind::Restore));
        ASSERT_TRUE(recorder && recorder->end(1, {{VXCLONE_BROADCAST_TVS, Verdict::NotApplied}}));
    }
    EXPECT_THAT(output().closing.back(),
                HasSubstr(": finished, but something failed or differs (channels)."));
}

TEST_F(StatusTest, runThatEndedShowsItsOwnResultsAndNamesThePackage) {
    {
        auto recorder = RunRecorder::begin(folder_.path(), recordOf(RunKind::Restore));
        ASSERT_TRUE(recorder);
        recorder->setName("Lobby, spring");
        recorder->setDigest(std::string(64, 'd'));
        ASSERT_TRUE(
            recorder->end(1, {{VXCLONE_AV_SETTINGS, Verdict::NotChosen},
                              {VXCLONE_VXHOTEL_FIRSTSCREEN_DATA, Verdict::Done, "", "org.vorta.orvel-app"},
                              {VXCLONE_VXHOTEL_FIRSTSCREEN_DATA, Verdict::Failed, "", "com.hotel.app"}}));
    }
    const Output said = output();
    std::ostringstream out;
    sayOutput(said, false, {out}, {out});
    EXPECT_THAT(out.str(), testing::StartsWith("category                       result\n"
                                               "apps      com.hotel.app        failed\n"
                                               "apps      org.vorta.orvel-app  done\n"
                                               "not chosen: av\n"
                                               "Last run: restore from /media/usb/clone, begun "
                                               "2027-01-15T08:00:00Z, ended "));
    EXPECT_THAT(said.closing,
                ElementsAre(HasSubstr(": finished, but something failed or differs (apps)."),
                            "The package: \"Lobby, spring\", digest " + std::string(64, 'd') + "."));
    std::ostringstream json;
    sayOutput(said, true, {json}, {json});
    EXPECT_THAT(json.str(), HasSubstr(R"("application":"com.hotel.app")"));
    EXPECT_THAT(json.str(), HasSubstr(R"("name":"Lobby, spring")"));
    for (const auto& line : jsonLines(json.str())) {
        EXPECT_THAT(schemaComplaint(line), IsEmpty());
    }
}

TEST_F(StatusTest, runOfAnOlderVxcloneHasNoNameAndIsReadAllTheSame) {
    {
        auto recorder = RunRecorder::begin(folder_.path(), recordOf(RunKind::Backup));
        ASSERT_TRUE(recorder && recorder->end(0, {}));
    }
    EXPECT_THAT(output().closing, Contains(HasSubstr("Last run: ")).Times(1));
    EXPECT_THAT(output().closing, testing::Not(Contains(HasSubstr("The package"))));
}

TEST_F(StatusTest, televisionWithoutARecordSaysSoOnce) {
    std::ostringstream out;
    sayOutput(output(), false, {out}, {out});
    const std::string sentence = "No run is recorded.";
    const std::size_t first = out.str().find(sentence);
    ASSERT_NE(first, std::string::npos);
    EXPECT_EQ(out.str().find(sentence, first + 1), std::string::npos);
}

TEST_F(StatusTest, followThatIsStoppedEndsBeforeTheRun) {
    const auto recorder = RunRecorder::begin(folder_.path(), recordOf(RunKind::Restore));
    ASSERT_TRUE(recorder);
    stop_.raise(SIGINT);
    const auto stopped = followRun(folder_.path(), view_, stop_);
    ASSERT_FALSE(stopped);
    EXPECT_EQ(exitStatusOf(stopped.error().code), 8);
}

}  // namespace
}  // namespace vxclone
