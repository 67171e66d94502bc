// The services that the virtual television does not have yet: each answers with its own failure, and leaves
// what it should have filled as it was.

#include "platform/aul.h"
#include "platform/avoc.h"
#include "platform/bundle.h"
#include "platform/factory_clone.h"
#include "platform/home_data_control.h"
#include "platform/message_port.h"
#include "platform/settings_data_clone.h"
#include "platform/source_api.h"
#include "platform/tv_service.h"
#include "platform/tvtimer.h"
#include "platform/vx_system_info.h"
#include "platform/was_clone.h"
#include "tests/contract/contract_test.h"

namespace vxcontract {
namespace {

using AbsentService = ContractTest;
namespace network = VXSystemAPI::nsVXSystemInfoAPI;

TEST_F(AbsentService, timersAndFactoryAndPictureAndWebFail) {
    EXPECT_NE(tvtimer_get_db("/tmp"), 0);
    EXPECT_NE(tvtimer_set_db("/tmp"), 0);
    EXPECT_NE(factory_clone_tv_to_usb(), 0);
    EXPECT_NE(factory_clone_usb_to_tv(), 0);
    EXPECT_NE(avoc_backup_all_settings("/tmp"), 0);
    EXPECT_NE(avoc_restore_all_settings("/tmp"), 0);
    EXPECT_NE(was_clone_backup(), 0);
    EXPECT_NE(was_clone_restore(), 0);
}

TEST_F(AbsentService, settingsDataFailsWithZeroAndHomeDataHasNoObject) {
    EXPECT_EQ(SettingsDataCloneAPI::BackupSettingsData("/tmp"), 0);
    EXPECT_EQ(SettingsDataCloneAPI::RestoreSettingsData("/tmp", SettingsDataCloneAPI::EARLY_RESTORE), 0);
    EXPECT_EQ(CHomeDataControlAPI::GetInstance(), nullptr);
    CHomeDataControlAPI::Destroy();
}

TEST_F(AbsentService, tvServiceHandsOutNoObjects) {
    IUtil* util = nullptr;
    IB2BControl* control = nullptr;
    IServiceNavigation* navigation = nullptr;
    EXPECT_NE(TVServiceAPI::CreateUtil(&util), 0);
    EXPECT_NE(TVServiceAPI::CreateB2BControl(&control), 0);
    EXPECT_NE(TVServiceAPI::CreateServiceNavigation(PROFILE_NAVIGATION, 0, &navigation), 0);
    EXPECT_EQ(util, nullptr);
    EXPECT_EQ(control, nullptr);
    EXPECT_EQ(navigation, nullptr);
}

TEST_F(AbsentService, navigationAndSourcesHaveAnObjectWhoseOperationsFail) {
    const TSTvMode all = {ANTENNA_MODE_ALL, SERVICE_MODE_ALL};
    std::list<CCNavigationModeInfo> entries;
    ASSERT_NE(CCCategoryUtil::GetInstance(), nullptr);
    EXPECT_NE(CCCategoryUtil::GetInstance()->GetNavigationList(all, entries), 0);
    EXPECT_TRUE(entries.empty());
    EXPECT_FALSE(CCCategoryUtil::GetInstance()->RemoveNavigation(all, CCNavigationModeInfo{}));
    std::shared_ptr<std::multimap<int, CSourceItem>> sources;
    ASSERT_NE(CSourceAPI::Get(), nullptr);
    EXPECT_FALSE(CSourceAPI::Get()->GetSourceList(&sources));
    EXPECT_EQ(sources, nullptr);
    EXPECT_FALSE(CSourceAPI::Get()->SetCustomIconPath(1, "/tmp/icon.png", {"/tmp/a.png", "/tmp/a.png"}, 0));
}

TEST_F(AbsentService, networkTimeFailsAndLeavesTheValues) {
    bool supported = true;
    auto zone = static_cast<VX_TIMEZONE>(90);
    EXPECT_NE(network::CheckNTPSupport(supported), 0);
    EXPECT_TRUE(supported);
    EXPECT_NE(network::SetNTPMode(true), 0);
    EXPECT_NE(network::GetCurrentTimezone(zone), 0);
    EXPECT_EQ(zone, static_cast<VX_TIMEZONE>(90));
    EXPECT_NE(network::SetTimezoneInfo(zone), 0);
    EXPECT_NE(network::SetNTPServerAddr("time.example"), 0);
}

TEST_F(AbsentService, messagesAndApplicationsFail) {
    bool exists = true;
    char* value = nullptr;
    EXPECT_LT(message_port_register_local_port("port", nullptr, nullptr), 0);
    EXPECT_NE(message_port_check_remote_port("org.example.app", "port", &exists), 0);
    EXPECT_TRUE(exists);
    EXPECT_NE(message_port_send_message_with_local_port("org.example.app", "port", nullptr, 1), 0);
    EXPECT_NE(aul_app_is_running("org.example.app"), 1);
    EXPECT_LT(aul_launch_app("org.example.app", nullptr), 1);
    EXPECT_EQ(bundle_create(), nullptr);
    EXPECT_NE(bundle_add_str(nullptr, "key", "value"), 0);
    EXPECT_NE(bundle_add(nullptr, "key", "value"), 0);
    EXPECT_NE(bundle_get_str(nullptr, "key", &value), 0);
    EXPECT_EQ(value, nullptr);
    EXPECT_NE(bundle_free(nullptr), 0);
}

}  // namespace
}  // namespace vxcontract
