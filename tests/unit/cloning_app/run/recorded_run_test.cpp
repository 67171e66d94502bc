#include "cloning_app/run/recorded_run.h"

#include <gmock/gmock.h>

#include "cloning_app/television/kept_run_keys.h"
#include "cloning_app/television/settings_store.h"
#include "tests/unit/cloning_app/run_test.h"

namespace vxclone {
namespace {

using testing::Contains;
using testing::HasSubstr;
using testing::IsEmpty;

class VisitTest : public RunTest {
 protected:
    std::filesystem::path data() const { return recordFolderOf(root_); }
    std::map<std::string, std::string> dataContent() const { return contentOf(data()); }
    static std::string results() { return store::readString(kResultKey).value(); }

    /// Leaves the state of a visit that died while the library saved the television.
    void dieWhileTheLibraryWorks() {
        writeFile(data() / "Clone.kept/a", "1");
        writeFile(root_ / "of-the-library", "x");
        ASSERT_TRUE(keepRunKeys(data()));
        writeFile(data() / "run.keys.new", "half");
        FakeEngine::report("VXCLONE_AV_SETTINGS-SUCCESS\n", 0);
    }
};

TEST_F(VisitTest, cloneFolderIsEmptyMeanwhileAndAfterwardsAsItWas) {
    writeFile(root_ / "a/b", "1");
    const auto before = dataContent();
    {
        auto visit = Visit::begin(context());
        ASSERT_TRUE(visit) << visit.error().sentence;
        EXPECT_TRUE(std::filesystem::is_empty(root_));
        writeFile(root_ / "more", "x");
        EXPECT_TRUE(visit->end());
        EXPECT_EQ(dataContent(), before);
    }
    EXPECT_EQ(dataContent(), before);
    EXPECT_THAT(view_.notices, IsEmpty());
}

TEST_F(VisitTest, cloneFolderIsOpenOrClosedToOthersAsItWas) {
    writeFile(root_ / "a", "1");
    for (const int mode : {0755, 0700, 0711}) {
        std::filesystem::permissions(root_, static_cast<std::filesystem::perms>(mode));
        { ASSERT_TRUE(Visit::begin(context())); }
        EXPECT_EQ(modeOf(root_), mode);
    }
}

TEST_F(VisitTest, cloneFolderThatWasNotThereIsNotThereAfterwards) {
    std::filesystem::create_directories(data());
    {
        const auto visit = Visit::begin(context());
        ASSERT_TRUE(visit);
        EXPECT_TRUE(std::filesystem::exists(root_));
    }
    EXPECT_THAT(dataContent(), IsEmpty());
}

TEST_F(VisitTest, runsAndOtherVisitsAreRefusedMeanwhileAndNoRunIsSaidToGoOn) {
    { ASSERT_TRUE(RunRecorder::begin(data(), {})->end(0, {})); }
    {
        const auto visit = Visit::begin(context());
        ASSERT_TRUE(visit);
        EXPECT_TRUE(isLookGoingOn(data()));
        EXPECT_FALSE(readLastRun(data()).value()->goingOn);
        EXPECT_EQ(Visit::begin(context()).error().code, ErrorCode::TelevisionBusy);
        EXPECT_EQ(RunRecorder::begin(data(), {}).error().code, ErrorCode::TelevisionBusy);
    }
    EXPECT_FALSE(isLookGoingOn(data()));
    EXPECT_TRUE(Visit::begin(context()));
}

TEST_F(VisitTest, runThatGoesOnKeepsVisitsOutAndIsNoLook) {
    const auto run = RunRecorder::begin(data(), {});
    ASSERT_TRUE(run);
    EXPECT_EQ(Visit::begin(context()).error().code, ErrorCode::TelevisionBusy);
    EXPECT_FALSE(isLookGoingOn(data()));
    EXPECT_TRUE(readLastRun(data()).value()->goingOn);
}

TEST_F(VisitTest, visitThatDiedIsPutRightByTheNextOneWhichSaysSo) {
    const std::string before = results();
    dieWhileTheLibraryWorks();
    ASSERT_TRUE(Visit::begin(context()));
    EXPECT_EQ(contentOf(root_), (std::map<std::string, std::string>{{"a", "1"}}));
    EXPECT_EQ(results(), before);
    EXPECT_EQ(store::readInt(kProgressKey), 100);
    EXPECT_FALSE(std::filesystem::exists(data() / "run.keys"));
    EXPECT_FALSE(std::filesystem::exists(data() / "run.keys.new"));
    EXPECT_THAT(view_.notices,
                Contains("A comparison broke off: what lay in the television's clone folder is "
                         "there again."));
}

TEST_F(VisitTest, visitThatDiedIsPutRightByTheNextRun) {
    dieWhileTheLibraryWorks();
    static_cast<void>(runUndo(context(), true));
    EXPECT_EQ(contentOf(root_), (std::map<std::string, std::string>{{"a", "1"}}));
    EXPECT_FALSE(std::filesystem::exists(data() / "Clone.kept"));
}

TEST_F(VisitTest, runBeginsOnlyWhereTheKeysOfADeadVisitCanBePutBack) {
    dieWhileTheLibraryWorks();
    FakeSettingsStore::instance().refuseWriting(kResultKey);
    const auto report = runBackup(context(), package_);
    ASSERT_FALSE(report);
    EXPECT_EQ(report.error().code, ErrorCode::SettingsRefused);
    EXPECT_THAT(report.error().sentence, HasSubstr(kResultKey));
    EXPECT_TRUE(std::filesystem::exists(data() / "run.keys"));
    EXPECT_EQ(engine_.runs, 0);
}

TEST_F(VisitTest, keysKeepTheirValuesByteForByte) {
    std::filesystem::create_directories(data());
    for (const std::string text : {"", "7\n8", "\n", "a\xff", "VXCLONE_AV_SETTINGS-FAIL\n"}) {
        store::writeString(kResultKey, text);
        store::writeInt(kProgressKey, -1);
        ASSERT_TRUE(keepRunKeys(data()));
        FakeEngine::report("other", 40);
        ASSERT_TRUE(putRunKeysBack(data()));
        EXPECT_EQ(results(), text);
        EXPECT_EQ(store::readInt(kProgressKey), -1);
    }
    FakeEngine::report("other", 40);
    ASSERT_TRUE(putRunKeysBack(data()));
    EXPECT_EQ(results(), "other") << "nothing was noted";
}

}  // namespace
}  // namespace vxclone
