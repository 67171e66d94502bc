// Progress and the result list.

#include "engine_test.h"

namespace vxtest {
namespace {

using testing::ElementsAre;

class ReportTest : public EngineTest {
 protected:
    ReportTest() { tv.setSetting(kCloneResultKey, std::string()); }
};

TEST_F(ReportTest, updateProgressLogsAndStoresTheValue) {
    engine.m_updateProgressVconf(42);
    EXPECT_THAT(tv.transcript(), ElementsAre("E/35 m_updateProgressVconf: Update Progress-42",
                                             "vconf_set_int(\"db/hotel/clone_progress\", 42)"));
    EXPECT_EQ(std::get<int>(tv.setting(kCloneProgressKey)), 42);
}

TEST_F(ReportTest, updateProgressAboveAHundredStoresItUnchanged) {
    engine.m_updateProgressVconf(150);
    EXPECT_EQ(std::get<int>(tv.setting(kCloneProgressKey)), 150);
}

TEST_F(ReportTest, updateProgressThatIsRefusedIsLogged) {
    tv.answer("vconf_set_int", 1);
    engine.m_updateProgressVconf(7);
    EXPECT_THAT(tv.describedLog(),
                ElementsAre("E/35 m_updateProgressVconf: Update Progress-7",
                            "E/35 m_updateProgressVconf: Unable to update Progress vconf value"));
    EXPECT_EQ(std::get<int>(tv.setting(kCloneProgressKey)), -1);
}

TEST_F(ReportTest, nameOfEachCategoryIsItsEnumerator) {
    const std::vector<std::string> names = {"VXCLONE_FACTORY_SETTINGS",
                                            "VXCLONE_AV_SETTINGS",
                                            "VXCLONE_HOME_INTERNAL_API_DATA",
                                            "VXCLONE_WAS_API_DATA",
                                            "VXCLONE_VCONF_DATA",
                                            "VXCLONE_BROADCAST_TVS",
                                            "VXCLONE_SETTINGS_DATA",
                                            "VXCLONE_BROADCAST_IPG_DATA",
                                            "VXCLONE_VXTV_TIMER_DATA",
                                            "VXCLONE_HOSPITALITY_LOGO",
                                            "VXCLONE_VXHOTEL_HOMEAPP_DATA",
                                            "VXCLONE_VXHOTEL_FIRSTSCREEN_DATA",
                                            "VXCLONE_VXHOTEL_MBR_LOGO",
                                            "VXCLONE_VXHOTEL_AMBIENT_APP_DATA",
                                            "VXCLONE_NTP_SETTINGS_DATA"};
    for (std::size_t value = 0; value < names.size(); ++value) {
        EXPECT_EQ(engine.m_GetVconfLogString(static_cast<VXClone>(value)), names[value]);
    }
}

TEST_F(ReportTest, nameOfAValueThatIsNoCategoryIsEmpty) {
    for (const int value : {15, 99, -1}) {
        EXPECT_EQ(engine.m_GetVconfLogString(static_cast<VXClone>(value)), "");
    }
}

TEST_F(ReportTest, appendReadsThenWritesTheWholeList) {
    EXPECT_TRUE(engine.m_AppendCloneResultVConf(1, VXCLONE_AV_SETTINGS));
    EXPECT_THAT(tv.transcript(),
                ElementsAre("I/32 m_AppendCloneResultVConf: ", "vconf_get_str(\"db/hotel/clone_result\")",
                            "vconf_set_str(\"db/hotel/clone_result\", \"VXCLONE_AV_SETTINGS-SUCCESS\n\")"));
}

TEST_F(ReportTest, appendOfAnyStatusButZeroIsASuccess) {
    EXPECT_TRUE(engine.m_AppendCloneResultVConf(5, VXCLONE_VCONF_DATA));
    EXPECT_EQ(results(), "VXCLONE_VCONF_DATA-SUCCESS\n");
    EXPECT_TRUE(engine.m_AppendCloneResultVConf(-1, VXCLONE_VCONF_DATA));
    EXPECT_EQ(results(), "VXCLONE_VCONF_DATA-SUCCESS\nVXCLONE_VCONF_DATA-SUCCESS\n");
}

TEST_F(ReportTest, appendOfAFailedUnknownCategoryHasNoName) {
    EXPECT_TRUE(engine.m_AppendCloneResultVConf(0, static_cast<VXClone>(99)));
    EXPECT_EQ(results(), "-FAIL\n");
}

TEST_F(ReportTest, appendTwiceKeepsCallOrder) {
    engine.m_AppendCloneResultVConf(1, VXCLONE_FACTORY_SETTINGS);
    engine.m_AppendCloneResultVConf(0, VXCLONE_AV_SETTINGS);
    EXPECT_EQ(results(), "VXCLONE_FACTORY_SETTINGS-SUCCESS\nVXCLONE_AV_SETTINGS-FAIL\n");
}

TEST_F(ReportTest, appendToAListThatCannotBeReadLosesTheOutcome) {
    tv.eraseSetting(kCloneResultKey);
    EXPECT_FALSE(engine.m_AppendCloneResultVConf(1, VXCLONE_AV_SETTINGS));
    EXPECT_THAT(tv.transcript(),
                ElementsAre("I/32 m_AppendCloneResultVConf: ", "vconf_get_str(\"db/hotel/clone_result\")",
                            "E/35 m_AppendCloneResultVConf: fail to get [db/hotel/clone_result]"));
}

TEST_F(ReportTest, appendThatCannotBeWrittenIsStillTrueAndSilent) {
    tv.answer("vconf_set_str", -1);
    EXPECT_TRUE(engine.m_AppendCloneResultVConf(1, VXCLONE_AV_SETTINGS));
    EXPECT_THAT(tv.describedLog(), ElementsAre("I/32 m_AppendCloneResultVConf: "));
    EXPECT_EQ(results(), "");
}

}  // namespace
}  // namespace vxtest
