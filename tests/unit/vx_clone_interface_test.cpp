// The facade and the exported functions, on the one engine of the process.

#include <type_traits>

#include "VXCloneAPIManager.h"
#include "vx_clone_api.h"
#include "whole_engine_test.h"

namespace vxtest {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::Not;

class FacadeTest : public WholeEngineTest {
 protected:
    const std::vector<VXClone> allCategories = {VXCLONE_FACTORY_SETTINGS,
                                                VXCLONE_AV_SETTINGS,
                                                VXCLONE_HOME_INTERNAL_API_DATA,
                                                VXCLONE_WAS_API_DATA,
                                                VXCLONE_VCONF_DATA,
                                                VXCLONE_BROADCAST_TVS,
                                                VXCLONE_SETTINGS_DATA,
                                                VXCLONE_BROADCAST_IPG_DATA,
                                                VXCLONE_VXTV_TIMER_DATA,
                                                VXCLONE_HOSPITALITY_LOGO,
                                                VXCLONE_VXHOTEL_HOMEAPP_DATA,
                                                VXCLONE_VXHOTEL_FIRSTSCREEN_DATA,
                                                VXCLONE_VXHOTEL_MBR_LOGO,
                                                VXCLONE_VXHOTEL_AMBIENT_APP_DATA,
                                                VXCLONE_NTP_SETTINGS_DATA};

    std::vector<std::string> progressSets() { return tv.callsOf("vconf_set_int"); }
};

TEST(Categories, valuesAreZeroToFourteenInThirtyTwoBits) {
    static_assert(sizeof(VXClone) == 4);
    EXPECT_EQ(VXCLONE_FACTORY_SETTINGS, 0);
    EXPECT_EQ(VXCLONE_NTP_SETTINGS_DATA, 14);
    EXPECT_EQ(static_cast<int>(static_cast<VXClone>(99)), 99);
}

TEST(Interface, engineIsAbstractAndDeletedThroughIt) {
    static_assert(std::is_abstract_v<VXCloneInterface>);
    static_assert(std::has_virtual_destructor_v<VXCloneInterface>);
    static_assert(std::is_base_of_v<VXCloneInterface, VXCloneHandler>);
    EXPECT_EQ(sizeof(VXCloneHandler), sizeof(void*));
}

TEST_F(FacadeTest, exportedRestoreHandlesAllFifteenAndReturnsZero) {
    EXPECT_EQ(vx_clone_restore_data(), 0);
    std::vector<std::string> expected;
    for (const int percent : {6, 13, 20, 26, 33, 40, 46, 53, 60, 66, 73, 80, 86, 93, 100}) {
        expected.push_back("vconf_set_int(\"db/hotel/clone_progress\", " + std::to_string(percent) + ")");
    }
    EXPECT_EQ(progressSets(), expected);
    EXPECT_EQ(VXCloneHandler::m_ecloneType, kDirectionRestore);
}

TEST_F(FacadeTest, exportedRestoreOnATelevisionWhereEverythingFailsReturnsZero) {
    for (const char* call :
         {"tvtimer_init", "vconf_set_str", "vconf_get_str", "vconf_set_int", "system_info_get_custom_int"}) {
        tv.answer(call, -1);
    }
    EXPECT_EQ(vx_clone_restore_data(), 0);
}

TEST_F(FacadeTest, exportedBackupReturnsZeroAlsoWhenEverythingFails) {
    EXPECT_EQ(vx_clone_backup_data(), 0);
    EXPECT_EQ(tv.describedLog().at(0), "E/35 BackupCloneData: ");
    for (const char* call :
         {"tvtimer_init", "vconf_set_str", "vconf_get_str", "vconf_get_int", "system_info_get_custom_int"}) {
        tv.answer(call, -1);
    }
    EXPECT_EQ(vx_clone_backup_data(), 0);
    EXPECT_EQ(VXCloneHandler::m_ecloneType, kDirectionBackup);
}

TEST_F(FacadeTest, restoreWithEmptyListFillsTheCallersVector) {
    std::vector<VXClone> list;
    EXPECT_EQ(VXCloneAPI::RestoreCloneData(list), 1);
    EXPECT_EQ(list, allCategories);
    const auto log = tv.describedLog();
    ASSERT_GE(log.size(), 3U);
    EXPECT_EQ(log[0], "E/35 RestoreCloneData: ");
    EXPECT_EQ(log[1], "E/35 GetCloneDataOrder: ");
    EXPECT_EQ(log[2], "E/35 RestoreCloneData: Getting Default Clone Data- size 15");
    EXPECT_EQ(tv.log()[0].source, "VXCloneInterface.cpp");
    EXPECT_EQ(tv.log()[1].source, "VXCloneAPIManager.cpp");
}

TEST_F(FacadeTest, restoreWithAListPassesItOnUnchanged) {
    const std::vector<VXClone> list = {VXCLONE_HOSPITALITY_LOGO, VXCLONE_HOSPITALITY_LOGO,
                                       VXCLONE_VXHOTEL_FIRSTSCREEN_DATA};
    EXPECT_EQ(VXCloneAPI::RestoreCloneData(list), 1);
    EXPECT_THAT(list, ElementsAre(VXCLONE_HOSPITALITY_LOGO, VXCLONE_HOSPITALITY_LOGO,
                                  VXCLONE_VXHOTEL_FIRSTSCREEN_DATA));
    EXPECT_THAT(progressSets(), ElementsAre("vconf_set_int(\"db/hotel/clone_progress\", 33)",
                                            "vconf_set_int(\"db/hotel/clone_progress\", 66)",
                                            "vconf_set_int(\"db/hotel/clone_progress\", 100)"));
    EXPECT_THAT(tv.messages(), Not(Contains("Getting Default Clone Data- size 3")));
}

TEST_F(FacadeTest, restoreOfADoubledCategoryAloneHandlesBothAndLeavesByException) {
    const std::vector<VXClone> list = {VXCLONE_HOSPITALITY_LOGO, VXCLONE_HOSPITALITY_LOGO};
    EXPECT_THROW(VXCloneAPI::RestoreCloneData(list), std::system_error);
    EXPECT_THAT(progressSets(), ElementsAre("vconf_set_int(\"db/hotel/clone_progress\", 50)",
                                            "vconf_set_int(\"db/hotel/clone_progress\", 100)"));
}

TEST_F(FacadeTest, backupReturnsTheEnginesOneWithoutAFailureLine) {
    EXPECT_EQ(VXCloneAPI::BackupCloneData(), 1);
    EXPECT_THAT(tv.messages(), Not(Contains("API Failed!!!!")));
    EXPECT_EQ(tv.describedLog().at(0), "E/35 BackupCloneData: ");
    EXPECT_EQ(tv.log().at(0).source, "VXCloneHandler.cpp");
}

TEST_F(FacadeTest, integrityOperationThatFailsIsLoggedAsFailed) {
    char path[] = "/tmp/area/missing/validate";
    EXPECT_EQ(VXCloneAPI::WriteDataToFile("/tmp/area/missing/info.txt"), 0);
    EXPECT_EQ(tv.describedLog().back(), "E/35 WriteDataToFile: API Failed!!!!");
    EXPECT_EQ(VXCloneAPI::CheckHashValidity({}, 1, path), 0);
    EXPECT_EQ(tv.describedLog().back(), "E/35 CheckHashValidity: API Failed!!!!");
}

TEST_F(FacadeTest, packageThatCannotBeJudgedIsNotReportedAsFitting) {
    EXPECT_NE(VXCloneAPI::CheckDataValidity("/tmp/area/missing"), 0);
    EXPECT_THAT(tv.messages(), Not(Contains("API Failed!!!!")));
}

TEST_F(FacadeTest, managerAppendsTheOrderWithoutClearing) {
    VXCloneAPIManager manager;
    ASSERT_NE(manager.GetCloneInterface(), nullptr);
    std::vector<VXClone> list = {VXCLONE_VXHOTEL_MBR_LOGO};
    manager.GetCloneDataOrder(list);
    std::vector<VXClone> expected = {VXCLONE_VXHOTEL_MBR_LOGO};
    expected.insert(expected.end(), allCategories.begin(), allCategories.end());
    EXPECT_EQ(list, expected);
    EXPECT_THAT(tv.describedLog(), ElementsAre("E/35 GetCloneDataOrder: "));
}

TEST_F(FacadeTest, managerMakesAndDestroysItsEngineInSilence) {
    { VXCloneAPIManager manager; }
    EXPECT_THAT(tv.transcript(), ElementsAre());
}

}  // namespace
}  // namespace vxtest
