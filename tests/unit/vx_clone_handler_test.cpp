// The two runs: the calls, their order, and their threads.

#include <algorithm>
#include <system_error>

#include "whole_engine_test.h"

namespace vxtest {
namespace {

using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

constexpr const char* kNetworkSkipped = "Home data and was api will be skipped...";

class RunTest : public WholeEngineTest {
 protected:
    static VXClone category(int value) { return static_cast<VXClone>(value); }

    std::size_t countOf(const std::string& message) const {
        const auto messages = tv.messages();
        return static_cast<std::size_t>(std::count(messages.begin(), messages.end(), message));
    }

    /// The position of the text in the calling thread's transcript.
    std::ptrdiff_t placeOf(const std::string& text) const {
        const auto transcript = tv.transcript();
        const auto found = std::find(transcript.begin(), transcript.end(), text);
        EXPECT_NE(found, transcript.end()) << text;
        return found - transcript.begin();
    }

    std::vector<std::string> progress() const {
        std::vector<std::string> values;
        for (const std::string& call : tv.callsOf("vconf_set_int")) {
            if (call.rfind("vconf_set_int(\"db/hotel/clone_progress\", ", 0) == 0) {
                values.push_back(call.substr(call.find(", ") + 2));
                values.back().pop_back();
            }
        }
        return values;
    }
};

using BackupTest = RunTest;
using RestoreTest = RunTest;

TEST(Direction, whenTheLibraryIsLoadedIsBackup) {
    EXPECT_EQ(kDirectionBackup, 0);
}

TEST_F(BackupTest, stepsAreMadeInOrder) {
    ASSERT_EQ(engine.BackupCloneData(), 1);
    const auto transcript = tv.transcript();
    ASSERT_GE(transcript.size(), 8U);
    EXPECT_EQ(transcript[0], "E/35 BackupCloneData: ");
    EXPECT_EQ(transcript[1], "tvtimer_init()");
    EXPECT_EQ(transcript[2], "vconf_set_str(\"db/hotel/clone_result\", \"\")");
    EXPECT_EQ(transcript[3], "E/35 m_CleanTVCloneDirectory: starting deleting stuff");

    const auto cleaned =
        placeOf(std::string("E/35 m_CleanTVCloneDirectory: ++++++++++++++++++++++++++++ ") + kCloneDirectory);
    const auto feature = placeOf(kReadNetworkSupport);
    const auto settings = placeOf("vconf_get_str(\"db/vxhotel/hotelmenu/welcomemessage\")");
    const auto waiting = placeOf("D/33 BackupCloneData: Waiting till App data is cloned successfully");
    EXPECT_LT(cleaned, feature);
    EXPECT_LT(feature, settings);
    EXPECT_LT(settings, waiting);
    EXPECT_EQ(waiting, static_cast<std::ptrdiff_t>(transcript.size()) - 3);
    EXPECT_EQ(transcript[transcript.size() - 2], "vconf_get_str(\"db/hotel/clone_result\")");
    EXPECT_EQ(transcript.back(), "E/35 BackupCloneData: Clone_BackUP status : \n{-----------------------\n" +
                                     results() + "\n-----------------------}\n");
}

TEST_F(BackupTest, directionIsBackupAndTheResultListIsEmptiedFirst) {
    VXCloneHandler::m_ecloneType = kDirectionRestore;
    std::int32_t directionAtEmptying = -1;
    tv.onCall("vconf_set_str", [&] { directionAtEmptying = VXCloneHandler::m_ecloneType; });
    EXPECT_EQ(engine.BackupCloneData(), 1);
    EXPECT_EQ(directionAtEmptying, kDirectionBackup);
    EXPECT_EQ(VXCloneHandler::m_ecloneType, kDirectionBackup);
    EXPECT_THAT(results(), Not(StartsWith("stale")));
}

TEST_F(BackupTest, packageOfTheLastBackupIsGoneBeforeAnythingIsWritten) {
    writeFile(clone("ProductCloneInfo.txt"), "old");
    fs::create_directories(clone("logo/deep"));
    engine.BackupCloneData();
    EXPECT_FALSE(fs::exists(clone("ProductCloneInfo.txt")));
    EXPECT_FALSE(fs::exists(clone("logo")));
    EXPECT_TRUE(fs::exists(clone("vconf/Vconf.json")));
}

TEST_F(BackupTest, timerServiceThatFailsIsLoggedAndTheRunGoesOn) {
    tv.answer("tvtimer_init", -1);
    EXPECT_EQ(engine.BackupCloneData(), 1);
    EXPECT_EQ(tv.transcript().at(2), "E/35 BackupCloneData: failed to init tvtimer api");
    EXPECT_TRUE(fs::exists(clone("vconf/Vconf.json")));
}

TEST_F(BackupTest, timerServiceThatAnswersAboveZeroIsFine) {
    tv.answer("tvtimer_init", 7);
    EXPECT_EQ(engine.BackupCloneData(), 1);
    EXPECT_EQ(countOf("failed to init tvtimer api"), 0U);
}

TEST_F(BackupTest, networkSupportOnSkipsNothing) {
    engine.BackupCloneData();
    EXPECT_EQ(countOf(kNetworkSkipped), 0U);
    EXPECT_THAT(tv.callsOf("system_info_get_custom_int"), ElementsAre(kReadNetworkSupport));
}

TEST_F(BackupTest, networkSupportOffIsLoggedOnce) {
    tv.setFeature(kNetworkSupportFeature, 0);
    engine.BackupCloneData();
    EXPECT_THAT(tv.describedLog(),
                Contains(std::string("E/35 BackupCloneData: ") + kNetworkSkipped).Times(1));
}

TEST_F(BackupTest, networkSupportThatCannotBeReadCountsAsOff) {
    tv.answer("system_info_get_custom_int", -1);
    engine.BackupCloneData();
    EXPECT_EQ(countOf(kNetworkSkipped), 1U);
}

TEST_F(BackupTest, networkSupportThatIsLeftAsItWasCountsAsOff) {
    tv.answer("system_info_get_custom_int", 0);
    engine.BackupCloneData();
    EXPECT_EQ(countOf(kNetworkSkipped), 1U);
}

TEST_F(BackupTest, progressIsNeverWritten) {
    engine.BackupCloneData();
    EXPECT_THAT(progress(), IsEmpty());
    EXPECT_EQ(std::get<int>(tv.setting(kCloneProgressKey)), -1);
}

TEST_F(BackupTest, applicationDataRunsOnAThreadOfItsOwnThatHasEndedAtTheEnd) {
    engine.BackupCloneData();
    const auto log = tv.describedLog();
    const std::string started = "E/35 operator(): Thread created for cloning App data's";
    EXPECT_THAT(log, Contains(started).Times(1));
    EXPECT_THAT(tv.transcript(), Not(Contains(started)));
    const auto at = std::find(log.begin(), log.end(), started);
    const auto cleaned = std::find(
        log.begin(), log.end(),
        std::string("E/35 m_CleanTVCloneDirectory: ++++++++++++++++++++++++++++ ") + kCloneDirectory);
    EXPECT_LT(cleaned, at);
    EXPECT_LT(at, log.end() - 1);
}

TEST_F(BackupTest, resultListThatCannotBeReadIsLoggedAsEmpty) {
    tv.answer("vconf_get_str", -1);
    EXPECT_EQ(engine.BackupCloneData(), 1);
    EXPECT_EQ(tv.messages().back(),
              "Clone_BackUP status : \n{-----------------------\n\n-----------------------}\n");
}

TEST_F(RestoreTest, stepsAreMadeInOrder) {
    ASSERT_EQ(engine.RestoreCloneData({VXCLONE_VXHOTEL_FIRSTSCREEN_DATA}), 1);
    EXPECT_THAT(tv.transcript(),
                ElementsAre("E/35 RestoreCloneData: ", "tvtimer_init()",
                            "vconf_set_str(\"db/hotel/clone_result\", \"\")", kReadNetworkSupport,
                            "E/35 RestoreCloneData: Cloning App data , Already Handled~!!!",
                            "E/35 m_updateProgressVconf: Update Progress-100",
                            "vconf_set_int(\"db/hotel/clone_progress\", 100)",
                            "vconf_get_str(\"db/hotel/clone_result\")",
                            "E/35 RestoreCloneData: Clone_Restore status : \n{-----------------------\n" +
                                results() + "\n-----------------------}\n"));
}

TEST_F(RestoreTest, cloneDirectoryIsNotEmptied) {
    writeFile(clone("ProductCloneInfo.txt"), "kept");
    engine.RestoreCloneData({VXCLONE_VXHOTEL_FIRSTSCREEN_DATA});
    EXPECT_EQ(readFile(clone("ProductCloneInfo.txt")), "kept");
}

TEST_F(RestoreTest, timerServiceThatFailsIsLoggedWithATrailingBlank) {
    tv.answer("tvtimer_init", -1);
    EXPECT_EQ(engine.RestoreCloneData({VXCLONE_VXHOTEL_FIRSTSCREEN_DATA}), 1);
    EXPECT_EQ(tv.transcript().at(2), "E/35 RestoreCloneData: failed to init tvtimer api ");
}

TEST_F(RestoreTest, emptyListIsRefusedAfterDirectionAndResultListWereSet) {
    EXPECT_EQ(engine.RestoreCloneData({}), 0);
    EXPECT_EQ(VXCloneHandler::m_ecloneType, kDirectionRestore);
    EXPECT_EQ(results(), "");
    EXPECT_EQ(tv.describedLog().back(), "E/35 RestoreCloneData: eCloneData size error");
    EXPECT_THAT(progress(), IsEmpty());
    EXPECT_EQ(countOf("Thread created for cloning App's data"), 0U);
}

TEST_F(RestoreTest, emptyListWithoutNetworkSupportLogsTheSkipFirst) {
    tv.setFeature(kNetworkSupportFeature, 0);
    EXPECT_EQ(engine.RestoreCloneData({}), 0);
    EXPECT_THAT(tv.messages(), ElementsAre("", kNetworkSkipped, "eCloneData size error"));
}

TEST_F(RestoreTest, ambientAloneIsRejectedAndLeftByTheJoin) {
    EXPECT_THROW(engine.RestoreCloneData({VXCLONE_VXHOTEL_AMBIENT_APP_DATA}), std::system_error);
    EXPECT_EQ(countOf("Wrong data passed in eCloneData"), 1U);
    EXPECT_THAT(progress(), ElementsAre("100"));
    EXPECT_EQ(tv.transcript().back(), "vconf_set_int(\"db/hotel/clone_progress\", 100)");
}

TEST_F(RestoreTest, joinWithoutThreadIsAnInvalidArgument) {
    try {
        engine.RestoreCloneData({VXCLONE_HOSPITALITY_LOGO});
        FAIL() << "the join did not raise";
    } catch (const std::system_error& error) {
        EXPECT_EQ(error.code(), std::errc::invalid_argument);
    }
}

TEST_F(RestoreTest, applicationDataIsLoadedByOneThreadHoweverOftenItIsListed) {
    EXPECT_EQ(engine.RestoreCloneData({category(11), category(11)}), 1);
    EXPECT_THAT(tv.describedLog(),
                Contains("E/35 operator(): Thread created for cloning App's data").Times(1));
    EXPECT_THAT(tv.transcript(), Not(Contains("E/35 operator(): Thread created for cloning App's data")));
    EXPECT_EQ(countOf("Cloning App data , Already Handled~!!!"), 2U);
}

TEST_F(RestoreTest, networkCategoryIsPassedOverInSilenceWithoutSupport) {
    tv.setFeature(kNetworkSupportFeature, 0);
    EXPECT_EQ(engine.RestoreCloneData({category(11), category(2), category(99)}), 1);
    EXPECT_THAT(progress(), ElementsAre("33", "66", "100"));
    EXPECT_THAT(tv.callsOf("CHomeDataControlAPI::GetInstance"), IsEmpty());
    EXPECT_EQ(countOf("Wrong data passed in eCloneData"), 1U);
    EXPECT_EQ(countOf(kNetworkSkipped), 1U);
}

TEST_F(RestoreTest, otherCategoriesAreLoadedWithoutNetworkSupport) {
    tv.setFeature(kNetworkSupportFeature, 0);
    const auto stepsOf = [this](VXClone loaded) {
        const std::size_t before = tv.transcript().size();
        EXPECT_EQ(engine.RestoreCloneData({loaded, VXCLONE_VXHOTEL_FIRSTSCREEN_DATA}), 1);
        return tv.transcript().size() - before;
    };
    const std::size_t withoutCloner = stepsOf(VXCLONE_HOME_INTERNAL_API_DATA);
    EXPECT_EQ(stepsOf(VXCLONE_WAS_API_DATA), withoutCloner);
    for (const VXClone loaded :
         {VXCLONE_FACTORY_SETTINGS, VXCLONE_AV_SETTINGS, VXCLONE_VCONF_DATA, VXCLONE_BROADCAST_TVS,
          VXCLONE_SETTINGS_DATA, VXCLONE_VXTV_TIMER_DATA, VXCLONE_HOSPITALITY_LOGO,
          VXCLONE_VXHOTEL_HOMEAPP_DATA, VXCLONE_VXHOTEL_MBR_LOGO, VXCLONE_NTP_SETTINGS_DATA}) {
        EXPECT_GT(stepsOf(loaded), withoutCloner) << "category " << loaded;
    }
}

TEST_F(RestoreTest, valuesThatAreNoCategoryAreRejectedAndCountTowardsProgress) {
    EXPECT_EQ(engine.RestoreCloneData({category(15), category(-1), category(11), category(-2147483647)}), 1);
    EXPECT_EQ(countOf("Wrong data passed in eCloneData"), 3U);
    EXPECT_THAT(progress(), ElementsAre("25", "50", "75", "100"));
}

TEST_F(RestoreTest, settingsAreLoadedOncePerEntry) {
    fs::create_directories(clone("vconf"));
    writeFile(clone("vconf/Vconf.json"), "{}");
    EXPECT_EQ(engine.RestoreCloneData({category(4), category(11), category(4)}), 1);
    EXPECT_EQ(tv.callsOf("vconf_set_bool").size(), 4U);
    EXPECT_THAT(progress(), ElementsAre("33", "66", "100"));
}

TEST_F(RestoreTest, defaultOrderWritesTheDocumentedProgress) {
    std::vector<VXClone> all;
    for (int value = 0; value <= 14; ++value) {
        all.push_back(category(value));
    }
    EXPECT_EQ(engine.RestoreCloneData(all), 1);
    EXPECT_THAT(progress(), ElementsAre("6", "13", "20", "26", "33", "40", "46", "53", "60", "66", "73", "80",
                                        "86", "93", "100"));
    EXPECT_EQ(countOf("Cloning App data , Already Handled~!!!"), 1U);
    EXPECT_EQ(countOf("Wrong data passed in eCloneData"), 1U);
    EXPECT_LT(placeOf("E/35 RestoreCloneData: Cloning App data , Already Handled~!!!"),
              placeOf("E/35 RestoreCloneData: Wrong data passed in eCloneData"));
}

TEST_F(RestoreTest, progressThatCannotBeWrittenDoesNotStopTheRun) {
    tv.answer("vconf_set_int", -1);
    EXPECT_EQ(engine.RestoreCloneData({category(11), category(13)}), 1);
    EXPECT_EQ(countOf("Unable to update Progress vconf value"), 2U);
}

}  // namespace
}  // namespace vxtest
