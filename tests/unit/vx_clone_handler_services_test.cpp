// The categories that a service of the television clones.

#include "cloner_test.h"

namespace vxtest {
namespace {

using testing::Contains;
using testing::ElementsAreArray;
using testing::IsEmpty;

constexpr std::int32_t kBackup = 0;
constexpr std::int32_t kRestore = 1;
constexpr std::int32_t kNeither = 2;

constexpr auto kFactory = &VXCloneHandler::m_FactorySettingsClone;
constexpr auto kPicture = &VXCloneHandler::m_AudioVideoSettingsClone;
constexpr auto kHomeData = &VXCloneHandler::m_HomeDataControlClone;
constexpr auto kWeb = &VXCloneHandler::m_WasAPIClone;
constexpr auto kChannelMap = &VXCloneHandler::m_BroadcastTVSClone;
constexpr auto kSettingsData = &VXCloneHandler::m_SettingsDataClone;
constexpr auto kGuide = &VXCloneHandler::m_BroadcastIPGDataClone;
constexpr auto kTimers = &VXCloneHandler::m_VXTVTimerDataClone;

using ServicesTest = ClonerTest;

/// A service that returns the status, and all expected effects.
struct Answered {
    std::string name;
    bool (VXCloneHandler::*cloner)();
    std::int32_t direction;
    std::string call;  ///< that answers the status
    int status;
    Lines transcript;  ///< up to the report
    std::string outcome;
    bool returned;
};

class AnsweredTest : public ServicesTest, public testing::WithParamInterface<Answered> {};

TEST_P(AnsweredTest, statusIsLoggedJudgedAndReported) {
    const Answered& given = GetParam();
    tv.answer(given.call, given.status);
    EXPECT_EQ(run(given.cloner, given.direction), given.returned);
    EXPECT_THAT(tv.transcript(), ElementsAreArray(joined(given.transcript, reported(given.outcome))));
}

Answered factory(const std::string& name, std::int32_t direction, int status) {
    const bool backup = direction == kBackup;
    const std::string call = backup ? "factory_clone_tv_to_usb" : "factory_clone_usb_to_tv";
    const std::string message = backup ? "FactoryCloneTvToUsb [status:" : "FactoryCloneUsbToTv [status:";
    return {name,
            kFactory,
            direction,
            call,
            status,
            {call + "()", "E/35 m_FactorySettingsClone: " + message + std::to_string(status) + "]"},
            "VXCLONE_FACTORY_SETTINGS-FAIL",
            false};
}

INSTANTIATE_TEST_SUITE_P(Factory, AnsweredTest,
                         testing::Values(factory("backupOfZero", kBackup, 0),
                                         factory("backupOfOne", kBackup, 1),
                                         factory("restoreOfZero", kRestore, 0),
                                         factory("restoreOfMinusOne", kRestore, -1)),
                         [](const auto& test) { return test.param.name; });

Answered picture(const std::string& name, std::int32_t direction, int status, bool success) {
    const bool backup = direction == kBackup;
    const std::string call = backup ? "avoc_backup_all_settings" : "avoc_restore_all_settings";
    return {name,
            kPicture,
            direction,
            call,
            status,
            {call + "(\"/opt/usr/apps/org.vorta.vxhotel-cloning/data/Clone\")",
             "E/35 m_AudioVideoSettingsClone: " + call + (backup ? "" : "()") +
                 " [status:" + std::to_string(status) + "]-->**" + (backup ? "0" : "1") + " is Success**"},
            success ? "VXCLONE_AV_SETTINGS-SUCCESS" : "VXCLONE_AV_SETTINGS-FAIL",
            success};
}

INSTANTIATE_TEST_SUITE_P(Picture, AnsweredTest,
                         testing::Values(picture("backupOfZero", kBackup, 0, true),
                                         picture("backupOfOne", kBackup, 1, false),
                                         picture("restoreOfZero", kRestore, 0, true),
                                         picture("restoreOfOne", kRestore, 1, false),
                                         picture("restoreOfMinusOne", kRestore, -1, false)),
                         [](const auto& test) { return test.param.name; });

Answered web(const std::string& name, std::int32_t direction, int status, bool success) {
    const std::string call = direction == kBackup ? "was_clone_backup" : "was_clone_restore";
    return {name,
            kWeb,
            direction,
            call,
            status,
            {call + "()",
             "E/35 m_WasAPIClone: " + call + " [status:" + std::to_string(status) + "]-->**0 is Success**"},
            success ? "VXCLONE_WAS_API_DATA-SUCCESS" : "VXCLONE_WAS_API_DATA-FAIL",
            false};
}

INSTANTIATE_TEST_SUITE_P(Web, AnsweredTest,
                         testing::Values(web("backupOfZero", kBackup, 0, true),
                                         web("backupOfOne", kBackup, 1, false),
                                         web("restoreOfZero", kRestore, 0, true),
                                         web("restoreOfMinusOne", kRestore, -1, false)),
                         [](const auto& test) { return test.param.name; });

Answered homeData(const std::string& name, std::int32_t direction, int status) {
    const std::string operation = direction == kBackup ? "CopyCloneDataTVtoUSB" : "CopyCloneDataUSBtoTV";
    const std::string call = "CHomeDataControlAPI::" + operation;
    return {name,
            kHomeData,
            direction,
            call,
            status,
            {"CHomeDataControlAPI::GetInstance()",
             call + "(\"/opt/usr/apps/org.vorta.vxhotel-cloning/data/Clone/"
                    "org.vorta.homedatacontrol-service\", \"\")",
             "E/35 m_HomeDataControlClone: HomeDataControl:" + operation +
                 " [status:" + std::to_string(status) + "]-->**1 is Success**",
             "CHomeDataControlAPI::Destroy()"},
            status == 1 ? "VXCLONE_HOME_INTERNAL_API_DATA-SUCCESS" : "VXCLONE_HOME_INTERNAL_API_DATA-FAIL",
            status == 1};
}

INSTANTIATE_TEST_SUITE_P(HomeData, AnsweredTest,
                         testing::Values(homeData("backupOfTrue", kBackup, 1),
                                         homeData("backupOfFalse", kBackup, 0),
                                         homeData("restoreOfTrue", kRestore, 1),
                                         homeData("restoreOfFalse", kRestore, 0)),
                         [](const auto& test) { return test.param.name; });

Answered timers(const std::string& name, std::int32_t direction, int status, bool success) {
    const std::string call = direction == kBackup ? "tvtimer_get_db" : "tvtimer_set_db";
    const std::string directory = "/opt/usr/apps/org.vorta.vxhotel-cloning/data/Clone/tvtimer/";
    return {name,
            kTimers,
            direction,
            call,
            status,
            joined(made(directory), Lines{call + "(\"" + directory + "\")",
                                          "E/35 m_VXTVTimerDataClone: TVTimer Status (0 Is Success) : [" +
                                              std::to_string(status) + "]"}),
            success ? "VXCLONE_VXTV_TIMER_DATA-SUCCESS" : "VXCLONE_VXTV_TIMER_DATA-FAIL",
            success};
}

INSTANTIATE_TEST_SUITE_P(Timers, AnsweredTest,
                         testing::Values(timers("backupOfZero", kBackup, 0, true),
                                         timers("backupOfOne", kBackup, 1, false),
                                         timers("restoreOfZero", kRestore, 0, true),
                                         timers("restoreOfMinusOne", kRestore, -1, false)),
                         [](const auto& test) { return test.param.name; });

Answered settingsBackup(const std::string& name, int status, bool success) {
    return {
        name,
        kSettingsData,
        kBackup,
        "SettingsDataCloneAPI::BackupSettingsData",
        status,
        {"SettingsDataCloneAPI::BackupSettingsData(\"/opt/usr/apps/org.vorta.vxhotel-cloning/data/Clone/\")",
         "E/35 m_SettingsDataClone:  SettingsDataClone Status: " + std::to_string(status)},
        success ? "VXCLONE_SETTINGS_DATA-SUCCESS" : "VXCLONE_SETTINGS_DATA-FAIL",
        success};
}

INSTANTIATE_TEST_SUITE_P(SettingsData, AnsweredTest,
                         testing::Values(settingsBackup("backupOfOne", 1, true),
                                         settingsBackup("backupOfMinusOne", -1, true),
                                         settingsBackup("backupOfZero", 0, false)),
                         [](const auto& test) { return test.param.name; });

/// The two parts of a restore of the settings data: their results, and that of the category.
struct Halves {
    const char* name;
    int early;
    int later;
    const char* outcome;
};

class HalvesTest : public ServicesTest, public testing::WithParamInterface<Halves> {};

TEST_P(HalvesTest, bothAreLoadedAndTheLaterOneDecides) {
    const auto& [name, early, later, outcome] = GetParam();
    tv.answerOnce("SettingsDataCloneAPI::RestoreSettingsData", early, 1);
    tv.answerOnce("SettingsDataCloneAPI::RestoreSettingsData", later, 2);
    EXPECT_EQ(run(kSettingsData, kRestore), later != 0);
    const std::string call =
        "SettingsDataCloneAPI::RestoreSettingsData(\"/opt/usr/apps/org.vorta.vxhotel-cloning/data/Clone/\", ";
    const std::string log = "E/35 m_SettingsDataClone: ";
    const Lines halves = {
        call + "1)", log + " RestoreSettingsData EARLY_RESTORE : [" + std::to_string(early) + "]",
        call + "2)", log + " RestoreSettingsData LATER_RESTORE : [" + std::to_string(later) + "]",
        log + " SettingsDataClone Status: " + std::to_string(later)};
    EXPECT_THAT(tv.transcript(), ElementsAreArray(joined(halves, reported(outcome))));
}

INSTANTIATE_TEST_SUITE_P(Restores, HalvesTest,
                         testing::Values(Halves{"bothSucceed", 1, 1, "VXCLONE_SETTINGS_DATA-SUCCESS"},
                                         Halves{"earlyFails", 0, 1, "VXCLONE_SETTINGS_DATA-SUCCESS"},
                                         Halves{"laterFails", 1, 0, "VXCLONE_SETTINGS_DATA-FAIL"},
                                         Halves{"bothFail", 0, 0, "VXCLONE_SETTINGS_DATA-FAIL"},
                                         Halves{"laterIsNegative", 3, -2, "VXCLONE_SETTINGS_DATA-SUCCESS"}),
                         [](const auto& test) { return test.param.name; });

TEST_F(ServicesTest, factoryThatAnswersZeroIsAFailureInTheListAndForTheCaller) {
    tv.answer("factory_clone_tv_to_usb", 0);
    EXPECT_FALSE(run(kFactory, kBackup));
    EXPECT_EQ(results(), "VXCLONE_FACTORY_SETTINGS-FAIL\n");
}

TEST_F(ServicesTest, homeDataWithoutServiceIsAFailureWithoutACall) {
    tv.answer("CHomeDataControlAPI::GetInstance", 0);
    for (const std::int32_t direction : {kBackup, kRestore, kNeither}) {
        tv.setSetting(kCloneResultKey, std::string());
        EXPECT_FALSE(run(kHomeData, direction));
    }
    const Lines once =
        joined(Lines{"CHomeDataControlAPI::GetInstance()"}, reported("VXCLONE_HOME_INTERNAL_API_DATA-FAIL"));
    EXPECT_THAT(tv.transcript(), ElementsAreArray(joined(once, once, once)));
}

TEST_F(ServicesTest, timersWhoseDirectoryCannotBeMadeAreAskedAllTheSame) {
    fs::remove_all(kCloneDirectory);
    for (const std::int32_t direction : {kBackup, kRestore}) {
        EXPECT_TRUE(run(kTimers, direction));
    }
    const std::string argument = "(\"/opt/usr/apps/org.vorta.vxhotel-cloning/data/Clone/tvtimer/\")";
    EXPECT_THAT(tv.describedLog(),
                Contains("E/35 m_VXTVTimerDataClone: Failed to create dir TV_TIMER!!").Times(2));
    EXPECT_THAT(tv.callsOf("tvtimer_get_db"), ElementsAreArray({"tvtimer_get_db" + argument}));
    EXPECT_THAT(tv.callsOf("tvtimer_set_db"), ElementsAreArray({"tvtimer_set_db" + argument}));
    EXPECT_EQ(results(), "VXCLONE_VXTV_TIMER_DATA-SUCCESS\nVXCLONE_VXTV_TIMER_DATA-SUCCESS\n");
}

TEST_F(ServicesTest, timersMakeTheirDirectory) {
    run(kTimers, kBackup);
    EXPECT_TRUE(fs::is_directory(clone("tvtimer")));
}

TEST_F(ServicesTest, guideDoesNothingAndReportsNothingInAnyDirection) {
    for (const std::int32_t direction : {kBackup, kRestore, kNeither}) {
        EXPECT_FALSE(run(kGuide, direction));
    }
    EXPECT_THAT(tv.transcript(), IsEmpty());
}

/// The effect of an invalid direction.
struct Directionless {
    const char* name;
    bool (VXCloneHandler::*cloner)();
    Lines transcript;  ///< up to the report
    const char* outcome;
};

class DirectionlessTest : public ServicesTest, public testing::WithParamInterface<Directionless> {};

TEST_P(DirectionlessTest, noServiceIsCalledAndTheFailureIsReported) {
    const Directionless& given = GetParam();
    EXPECT_FALSE(run(given.cloner, kNeither));
    EXPECT_THAT(tv.transcript(), ElementsAreArray(joined(given.transcript, reported(given.outcome))));
    EXPECT_TRUE(fs::is_empty(kCloneDirectory));
}

INSTANTIATE_TEST_SUITE_P(
    Cloners, DirectionlessTest,
    testing::Values(Directionless{"factory", kFactory, {}, "VXCLONE_FACTORY_SETTINGS-FAIL"},
                    Directionless{"picture", kPicture, {}, "VXCLONE_AV_SETTINGS-FAIL"},
                    Directionless{"homeData",
                                  kHomeData,
                                  {"CHomeDataControlAPI::GetInstance()", "CHomeDataControlAPI::Destroy()"},
                                  "VXCLONE_HOME_INTERNAL_API_DATA-FAIL"},
                    Directionless{"web", kWeb, {}, "VXCLONE_WAS_API_DATA-FAIL"},
                    Directionless{"settingsData", kSettingsData, {}, "VXCLONE_SETTINGS_DATA-FAIL"},
                    Directionless{"timers", kTimers, {}, "VXCLONE_VXTV_TIMER_DATA-FAIL"},
                    Directionless{"channelMap",
                                  kChannelMap,
                                  {"TVServiceAPI::CreateUtil()", "TVServiceAPI::CreateB2BControl()"},
                                  "VXCLONE_BROADCAST_TVS-FAIL"}),
    [](const auto& test) { return test.param.name; });

// The channel map.

const std::string kMapDirectory = "/opt/usr/apps/org.vorta.vxhotel-cloning/data/Clone/tvs-chms/";
const std::string kMapArgument = "(\"" + kMapDirectory + "\")";
const Lines kObjects = {"TVServiceAPI::CreateUtil()", "TVServiceAPI::CreateB2BControl()"};
const Lines kImported = {"E/35 m_BroadcastTVSClone: tvs-chms exists - Invoke Restore",
                         "IUtil::ImportChannelMap" + kMapArgument};
const Lines kLoaded = {"E/35 m_BroadcastTVSClone: TVSChannelMap _Restore success " + kMapDirectory};
const Lines kSaved = {"E/35 m_BroadcastTVSClone: TVSChannelMap _BackUp success " + kMapDirectory};

class ChannelMapTest : public ServicesTest {
 protected:
    void givePackageAMap() {
        fs::create_directories(clone("tvs-chms"));
        writeFile(clone("tvs-chms/tvs-chms.zip"), "map");
    }
};

TEST_F(ChannelMapTest, backupExportsTheMapAndThenTheHotelList) {
    EXPECT_TRUE(run(kChannelMap, kBackup));
    const Lines exported = {"IUtil::ExportChannelMap" + kMapArgument,
                            "IB2BControl::ExportChannelMap" + kMapArgument};
    EXPECT_THAT(tv.transcript(), ElementsAreArray(joined(kObjects, exported, kSaved,
                                                         reported("VXCLONE_BROADCAST_TVS-SUCCESS"))));
}

TEST_F(ChannelMapTest, backupWhoseExportsFailIsASuccess) {
    tv.answer("IUtil::ExportChannelMap", 0);
    tv.answer("IB2BControl::ExportChannelMap", 0);
    EXPECT_TRUE(run(kChannelMap, kBackup));
    EXPECT_EQ(results(), "VXCLONE_BROADCAST_TVS-SUCCESS\n");
}

TEST_F(ChannelMapTest, backupWithoutHotelControlExportsTheMapAlone) {
    tv.answer("TVServiceAPI::CreateB2BControl", -1);
    EXPECT_TRUE(run(kChannelMap, kBackup));
    EXPECT_THAT(tv.transcript(),
                ElementsAreArray(joined(kObjects, Lines{"IUtil::ExportChannelMap" + kMapArgument}, kSaved,
                                        reported("VXCLONE_BROADCAST_TVS-SUCCESS"))));
}

TEST_F(ChannelMapTest, anyDirectionWithoutUtilityIsAFailureWithoutACall) {
    givePackageAMap();
    tv.answer("TVServiceAPI::CreateUtil", -1);
    for (const std::int32_t direction : {kBackup, kRestore, kNeither}) {
        tv.setSetting(kCloneResultKey, std::string());
        EXPECT_FALSE(run(kChannelMap, direction));
    }
    const Lines once = joined(Lines{"TVServiceAPI::CreateUtil()"}, reported("VXCLONE_BROADCAST_TVS-FAIL"));
    EXPECT_THAT(tv.transcript(), ElementsAreArray(joined(once, once, once)));
}

TEST_F(ChannelMapTest, restoreThatImportsResetsTheNavigation) {
    givePackageAMap();
    EXPECT_TRUE(run(kChannelMap, kRestore));
    const Lines reset = {"E/35 m_ResetMyChannelNavigation: Removing ResetMyChannelNavigation",
                         "TVServiceAPI::CreateServiceNavigation(1, 0)", "CCCategoryUtil::GetInstance()",
                         "CCCategoryUtil::GetNavigationList(-1, -1)"};
    EXPECT_THAT(tv.transcript(),
                ElementsAreArray(joined(kObjects, asked(kMapDirectory + "tvs-chms.zip"), kImported, reset,
                                        kLoaded, reported("VXCLONE_BROADCAST_TVS-SUCCESS"))));
}

TEST_F(ChannelMapTest, restoreOfAnImportThatAnswersANegativeResetsTheNavigation) {
    givePackageAMap();
    tv.answer("IUtil::ImportChannelMap", -1);
    EXPECT_TRUE(run(kChannelMap, kRestore));
    EXPECT_EQ(tv.callsOf("TVServiceAPI::CreateServiceNavigation").size(), 1U);
}

TEST_F(ChannelMapTest, restoreOfAnImportThatAnswersZeroIsASuccessWithoutReset) {
    givePackageAMap();
    tv.answer("IUtil::ImportChannelMap", 0);
    EXPECT_TRUE(run(kChannelMap, kRestore));
    EXPECT_THAT(tv.transcript(),
                ElementsAreArray(joined(kObjects, asked(kMapDirectory + "tvs-chms.zip"), kImported, kLoaded,
                                        reported("VXCLONE_BROADCAST_TVS-SUCCESS"))));
}

TEST_F(ChannelMapTest, restoreWhoseResetFailsIsASuccess) {
    givePackageAMap();
    tv.answer("TVServiceAPI::CreateServiceNavigation", -1);
    EXPECT_TRUE(run(kChannelMap, kRestore));
    EXPECT_EQ(results(), "VXCLONE_BROADCAST_TVS-SUCCESS\n");
}

TEST_F(ChannelMapTest, restoreWithoutMapInThePackageIsAFailureWithoutACall) {
    EXPECT_FALSE(run(kChannelMap, kRestore));
    EXPECT_THAT(tv.transcript(), ElementsAreArray(joined(kObjects, asked(kMapDirectory + "tvs-chms.zip"),
                                                         reported("VXCLONE_BROADCAST_TVS-FAIL"))));
}

TEST_F(ChannelMapTest, restoreWithoutHotelControlImports) {
    givePackageAMap();
    tv.answer("TVServiceAPI::CreateB2BControl", -1);
    EXPECT_TRUE(run(kChannelMap, kRestore));
    EXPECT_EQ(tv.callsOf("IUtil::ImportChannelMap").size(), 1U);
}

TEST_F(ServicesTest, everyLineOfTheMembersNamesItsSource) {
    for (const auto cloner : {kFactory, kPicture, kHomeData, kWeb, kSettingsData}) {
        run(cloner, kRestore);
    }
    std::size_t ours = 0;
    for (const LogLine& line : tv.log()) {
        if (line.function != "m_AppendCloneResultVConf") {
            EXPECT_EQ(line.source, "VXCloneHandlerServices.cpp") << line.function;
            ++ours;
        }
    }
    EXPECT_EQ(ours, 7U);
}

}  // namespace
}  // namespace vxtest
