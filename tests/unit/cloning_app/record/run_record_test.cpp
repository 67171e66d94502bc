#include "cloning_app/record/run_record.h"

#include <gmock/gmock.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/unit/cloning_app/test_folder.h"

namespace vxclone {
namespace {

using testing::HasSubstr;
using testing::UnorderedElementsAre;

const Row kFailed{VXCLONE_VXHOTEL_FIRSTSCREEN_DATA, Verdict::Failed, "no answer", "org.some.app"};

RunRecord aRestore() {
    RunRecord record;
    record.kind = RunKind::Restore;
    record.package = "/media/usb/clone";
    record.digest = std::string(64, 'a');
    record.begun = 1'800'000'000;
    return record;
}

class RunRecordTest : public testing::Test {
 protected:
    LastRun last() const {
        const auto read = readLastRun(folder_.path());
        EXPECT_TRUE(read && *read) << (read ? "no record" : read.error().sentence);
        return read && *read ? **read : LastRun{{}, false};
    }

    void expectDamaged(const std::string& text) const {
        writeFile(folder_ / "run.json", text);
        const auto read = readLastRun(folder_.path());
        ASSERT_FALSE(read) << text;
        EXPECT_EQ(read.error().code, ErrorCode::RecordDamaged);
        EXPECT_THAT(read.error().sentence, HasSubstr((folder_ / "run.json").string()));
    }

    TestFolder folder_;
};

TEST_F(RunRecordTest, readBeforeAnyRunIsNone) {
    const auto here = readLastRun(folder_.path());
    ASSERT_TRUE(here);
    EXPECT_FALSE(*here);
    const auto nowhere = readLastRun(folder_ / "missing");
    ASSERT_TRUE(nowhere);
    EXPECT_FALSE(*nowhere);
}

TEST_F(RunRecordTest, runThatGoesOnIsSeenWithItsPhase) {
    auto recorder = RunRecorder::begin(folder_ / "made/for/it", aRestore());
    ASSERT_TRUE(recorder) << recorder.error().sentence;
    ASSERT_TRUE(recorder->enter(RunPhase::Restoring));
    const auto read = readLastRun(folder_ / "made/for/it");
    ASSERT_TRUE(read && *read);
    EXPECT_TRUE((*read)->goingOn);
    EXPECT_FALSE((*read)->unfinished());
    EXPECT_EQ((*read)->record.phase, RunPhase::Restoring);
    EXPECT_EQ((*read)->record.package, "/media/usb/clone");
    EXPECT_EQ((*read)->record.begun, 1'800'000'000);
}

TEST_F(RunRecordTest, progressThatIsToldIsSeenByOthersUntilTheRunIsOver) {
    {
        auto recorder = RunRecorder::begin(folder_.path(), aRestore());
        ASSERT_TRUE(recorder);
        EXPECT_FALSE(last().progress);
        for (std::size_t phase = 0; phase < kShownPhaseCount; ++phase) {
            for (const int percent : {0, 1, 2, 99, 100}) {
                const ToldProgress told{static_cast<ShownPhase>(phase), percent};
                recorder->tell(told);
                recorder->tell(told);
                EXPECT_EQ(last().progress, told) << phase << ", " << percent;
                EXPECT_TRUE(last().goingOn);
            }
        }
        EXPECT_EQ(exitStatusOf(RunRecorder::begin(folder_.path(), {}).error().code), 9);
    }
    EXPECT_FALSE(last().progress);
    EXPECT_TRUE(RunRecorder::begin(folder_.path(), aRestore()));
}

TEST_F(RunRecordTest, runThatEndedKeepsStatusAndRows) {
    {
        auto recorder = RunRecorder::begin(folder_.path(), aRestore());
        ASSERT_TRUE(recorder && recorder->end(1, {kFailed}));
    }
    const LastRun run = last();
    EXPECT_FALSE(run.goingOn);
    EXPECT_FALSE(run.unfinished());
    EXPECT_EQ(run.record.exitStatus, 1);
    EXPECT_TRUE(run.record.ended);
    ASSERT_EQ(run.record.rows.size(), 1U);
    EXPECT_EQ(run.record.rows[0].category, kFailed.category);
    EXPECT_EQ(run.record.rows[0].verdict, kFailed.verdict);
    EXPECT_EQ(run.record.rows[0].detail, kFailed.detail);
    EXPECT_EQ(run.record.rows[0].subject, kFailed.subject);
}

TEST_F(RunRecordTest, televisionIsHalfChangedFromTheLoadUntilARunComesToItsEnd) {
    {
        auto recorder = RunRecorder::begin(folder_.path(), aRestore());
        ASSERT_TRUE(recorder);
        recorder->setWayBack();
        EXPECT_FALSE(recorder->record().halfChanged);
        ASSERT_TRUE(recorder->enter(RunPhase::Restoring));
        EXPECT_TRUE(recorder->record().halfChanged);
        EXPECT_FALSE(recorder->record().allLoaded);
        ASSERT_TRUE(recorder->enter(RunPhase::ReadingBack));
        ASSERT_TRUE(recorder->breakOff(8, {kFailed}));
    }
    EXPECT_EQ(last().record.brokeOffIn, RunPhase::ReadingBack);
    EXPECT_EQ(last().record.rows.size(), 1U);
    RunRecord backup;
    backup.kind = RunKind::Backup;
    {
        auto recorder = RunRecorder::begin(folder_.path(), backup);
        ASSERT_TRUE(recorder && recorder->enter(RunPhase::Writing) && recorder->end(0, {}));
    }
    EXPECT_FALSE(last().record.brokeOffIn);
    EXPECT_TRUE(last().record.halfChanged && last().record.allLoaded && last().record.wayBack);
    {
        auto recorder = RunRecorder::begin(folder_.path(), aRestore());
        ASSERT_TRUE(recorder && recorder->enter(RunPhase::Restoring));
        EXPECT_FALSE(recorder->record().allLoaded);
        EXPECT_TRUE(recorder->record().wayBack);
        ASSERT_TRUE(recorder->end(0, {}));
    }
    EXPECT_FALSE(last().record.halfChanged || last().record.allLoaded || last().record.wayBack);
}

TEST_F(RunRecordTest, safetyBackupOfAHalfChangedTelevisionIsNoWayBackButThatOfAnUndoIs) {
    ASSERT_TRUE(RunRecorder::begin(folder_.path(), aRestore())->enter(RunPhase::Restoring));
    {
        auto restore = RunRecorder::begin(folder_.path(), aRestore());
        ASSERT_TRUE(restore);
        restore->setWayBack();
        EXPECT_FALSE(restore->record().wayBack);
    }
    RunRecord undo;
    undo.kind = RunKind::Undo;
    auto recorder = RunRecorder::begin(folder_.path(), undo);
    ASSERT_TRUE(recorder);
    recorder->setWayBack();
    EXPECT_TRUE(recorder->record().wayBack);
}

TEST_F(RunRecordTest, processThatDiesLeavesAnUnfinishedRunAndNoHold) {
    const pid_t child = fork();
    if (child == 0) {
        auto recorder = RunRecorder::begin(folder_.path(), aRestore());
        const bool good = recorder && recorder->enter(RunPhase::ReadingBack);
        _exit(good ? 0 : 1);
    }
    int status = -1;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    ASSERT_EQ(status, 0);
    EXPECT_TRUE(last().unfinished());
    EXPECT_EQ(last().record.phase, RunPhase::ReadingBack);
    EXPECT_TRUE(RunRecorder::begin(folder_.path(), aRestore()));
}

TEST_F(RunRecordTest, secondRunIsRefusedAndTheRecordStaysTheFirsts) {
    const auto first = RunRecorder::begin(folder_.path(), aRestore());
    ASSERT_TRUE(first);
    const auto second = RunRecorder::begin(folder_.path(), {});
    ASSERT_FALSE(second);
    EXPECT_EQ(exitStatusOf(second.error().code), 9);
    EXPECT_EQ(last().record.kind, RunKind::Restore);
}

TEST_F(RunRecordTest, askingWhetherARunGoesOnKeepsNobodyFromBeginning) {
    ASSERT_TRUE(RunRecorder::begin(folder_.path(), aRestore()));
    for (int round = 0; round < 100; ++round) {
        EXPECT_FALSE(last().goingOn);
        EXPECT_TRUE(RunRecorder::begin(folder_.path(), aRestore()));
    }
}

TEST_F(RunRecordTest, writingLeavesNothingBesideTheRecordAndTheLock) {
    auto recorder = RunRecorder::begin(folder_.path(), aRestore());
    ASSERT_TRUE(recorder && recorder->end(0, {}));
    std::vector<std::string> names;
    for (const auto& [name, content] : contentOf(folder_.path())) {
        names.push_back(name);
    }
    EXPECT_THAT(names, UnorderedElementsAre("run.json", "run.lock"));
}

TEST_F(RunRecordTest, damagedRecordIsAnErrorThatNamesTheFile) {
    const std::string good = recordText(aRestore());
    const auto with = [&good](const std::string& from, const std::string& to) {
        std::string text = good;
        const std::size_t at = text.find(from);
        EXPECT_NE(at, std::string::npos) << from;
        return text.replace(at, from.size(), to);
    };
    for (const std::string& text :
         {std::string(), std::string("{"), std::string("[]"), std::string("7"), std::string(300'000, '['),
          good.substr(0, good.size() / 2), with("\"restore\"", "\"format\""), with("1800000000", "1.5"),
          with("1800000000", "99999999999999999999"), with("1800000000", "\"now\""),
          with("\"staging\"", "\"done\""), with("\"rows\": []", "\"rows\": [7]"),
          with("\"rows\": []", "\"rows\": [{\"category\": \"x\"}]"),
          with("\"rows\": []", "\"rows\": [], \"brokeOffIn\": \"safety\""),
          with("\"version\": 1", "\"version\": 2")}) {
        expectDamaged(text);
    }
}

TEST_F(RunRecordTest, recordThatIsALinkIsNotFollowed) {
    writeFile(folder_ / "elsewhere", recordText(aRestore()));
    std::filesystem::create_symlink("elsewhere", folder_ / "run.json");
    EXPECT_FALSE(readLastRun(folder_.path()));
}

TEST(RunRecord, folderIsBesideTheCloneFolder) {
    EXPECT_EQ(recordFolderOf("/opt/data/Clone/"), "/opt/data");
    EXPECT_EQ(recordFolderOf("/opt/data/Clone"), "/opt/data");
}

TEST(RunRecord, timeIsUtc) {
    EXPECT_EQ(timeText(0), "1970-01-01T00:00:00Z");
    EXPECT_EQ(timeText(1'800'000'000), "2027-01-15T08:00:00Z");
}

TEST_F(RunRecordTest, recordOfAClockBefore1970OrFarFromNowIsReadable) {
    for (const std::int64_t begun : {std::int64_t{-1}, std::int64_t{-2'147'483'648}, kEarliestTime}) {
        RunRecord record = aRestore();
        record.begun = begun;
        const auto read = parseRecord(recordText(record), "run.json");
        ASSERT_TRUE(read) << begun;
        EXPECT_EQ(read->begun, begun);
    }
    EXPECT_EQ(timeText(-1), "1969-12-31T23:59:59Z");
    RunRecord record = aRestore();
    record.begun = kLatestTime + 1;
    EXPECT_EQ(parseRecord(recordText(record), "run.json")->begun, kLatestTime);
    record.begun = kEarliestTime - 1;
    EXPECT_EQ(parseRecord(recordText(record), "run.json")->begun, kEarliestTime);
    EXPECT_EQ(timeText(kEarliestTime), "1000-01-01T00:00:00Z");
    EXPECT_EQ(timeText(kLatestTime), "9999-12-31T23:59:59Z");
}

TEST_F(RunRecordTest, runThatEndedBeforeItBeganByAClockThatJumpedBackIsTheLastRun) {
    RunRecord future = aRestore();
    future.begun = kLatestTime;
    {
        auto recorder = RunRecorder::begin(folder_.path(), future);
        ASSERT_TRUE(recorder && recorder->enter(RunPhase::Restoring) && recorder->end(0, {}));
    }
    EXPECT_LT(*last().record.ended, last().record.begun);
    EXPECT_FALSE(last().unfinished() || last().record.halfChanged);
    RunRecord earlier = aRestore();
    earlier.begun = -1;
    ASSERT_TRUE(RunRecorder::begin(folder_.path(), earlier)->enter(RunPhase::Restoring));
    EXPECT_TRUE(last().unfinished() && last().record.halfChanged);
    EXPECT_EQ(last().record.begun, -1);
}

}  // namespace
}  // namespace vxclone
