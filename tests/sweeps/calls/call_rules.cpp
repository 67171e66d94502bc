// The rules follow the documentation of the services and the library, not the library's code: what each call
// decides, and which of its results are a failure.

#include "call_rules.h"

#include <algorithm>
#include <iterator>

namespace vxtest {

namespace {

constexpr const char* kNone = "";

/// First the rules that differ between restore and backup.
constexpr CallRule kRestoreRules[] = {
    {"vconf_get_int", "ntp/ntp_mode", Fails::NotZero, Effect::Failed, "VXCLONE_NTP_SETTINGS_DATA"},
    {"vconf_get_str", "ntp/server_url", Fails::Always, Effect::Failed, "VXCLONE_NTP_SETTINGS_DATA"},
};

constexpr CallRule kRules[] = {
    {"tvtimer_init", "", Fails::Never, Effect::None, kNone},
    // An application that seems not to run is launched.
    {"aul_app_is_running", "", Fails::Never, Effect::None, kNone},
    {"aul_launch_app", "", Fails::BelowOne, Effect::NoApplication, kNone},
    {"vconf_get_str", "db/first_screen/type", Fails::Always, Effect::NoApplication, kNone},
    {"bundle_create", "", Fails::Always, Effect::ExchangeFailed, kNone},
    {"bundle_add", "", Fails::Never, Effect::None, kNone},
    {"bundle_add_str", "", Fails::Never, Effect::None, kNone},
    {"bundle_get_str", "response_clone", Fails::Always, Effect::ExchangeFailed, kNone},
    {"bundle_free", "", Fails::Never, Effect::None, kNone},
    {"message_port_register_local_port", "", Fails::Always, Effect::NoPort, kNone},
    {"message_port_check_remote_port", "", Fails::Always, Effect::PortUnseen, kNone},
    {"message_port_send_message_with_local_port", "", Fails::Always, Effect::ExchangeFailed, kNone},
    // The calls that write the report. The expected verdict follows them one by one.
    {"vconf_get_str", "db/hotel/clone_result", Fails::Never, Effect::None, kNone},
    {"vconf_set_str", "db/hotel/clone_result", Fails::Never, Effect::None, kNone},
    {"vconf_set_int", "db/hotel/clone_progress", Fails::Never, Effect::None, kNone},
    // Always reported as a failure.
    {"factory_clone_tv_to_usb", "", Fails::Never, Effect::None, kNone},
    {"factory_clone_usb_to_tv", "", Fails::Never, Effect::None, kNone},
    {"avoc_backup_all_settings", "", Fails::NotZero, Effect::Failed, "VXCLONE_AV_SETTINGS"},
    {"avoc_restore_all_settings", "", Fails::NotZero, Effect::Failed, "VXCLONE_AV_SETTINGS"},
    {"system_info_get_custom_int", "network_support", Fails::Always, Effect::NoNetwork, kNone},
    {"CHomeDataControlAPI::GetInstance", "", Fails::Always, Effect::Failed, "VXCLONE_HOME_INTERNAL_API_DATA"},
    {"CHomeDataControlAPI::CopyCloneDataTVtoUSB", "", Fails::Zero, Effect::Failed,
     "VXCLONE_HOME_INTERNAL_API_DATA"},
    {"CHomeDataControlAPI::CopyCloneDataUSBtoTV", "", Fails::Zero, Effect::Failed,
     "VXCLONE_HOME_INTERNAL_API_DATA"},
    {"CHomeDataControlAPI::Destroy", "", Fails::Never, Effect::None, kNone},
    {"was_clone_backup", "", Fails::NotZero, Effect::Failed, "VXCLONE_WAS_API_DATA"},
    {"was_clone_restore", "", Fails::NotZero, Effect::Failed, "VXCLONE_WAS_API_DATA"},
    {"vconf_get_int", "", Fails::NotZero, Effect::SettingLost, kNone},
    {"vconf_get_str", "", Fails::Always, Effect::SettingLost, kNone},
    {"vconf_get_bool", "", Fails::NotZero, Effect::SettingLost, kNone},
    {"vconf_set_int", "", Fails::Always, Effect::SettingLost, kNone},
    {"vconf_set_str", "", Fails::Always, Effect::SettingLost, kNone},
    {"vconf_set_bool", "", Fails::Always, Effect::SettingLost, kNone},
    {"TVServiceAPI::CreateUtil", "", Fails::Always, Effect::Failed, "VXCLONE_BROADCAST_TVS"},
    // The channel map is always reported as a success.
    {"TVServiceAPI::CreateB2BControl", "", Fails::Never, Effect::None, kNone},
    {"IUtil::ExportChannelMap", "", Fails::Never, Effect::None, kNone},
    {"IB2BControl::ExportChannelMap", "", Fails::Never, Effect::None, kNone},
    {"IUtil::ImportChannelMap", "", Fails::Never, Effect::None, kNone},
    {"TVServiceAPI::CreateServiceNavigation", "", Fails::Never, Effect::None, kNone},
    {"CCCategoryUtil::GetInstance", "", Fails::Never, Effect::None, kNone},
    {"CCCategoryUtil::GetNavigationList", "", Fails::Never, Effect::None, kNone},
    {"CCCategoryUtil::RemoveNavigation", "", Fails::Never, Effect::None, kNone},
    {"SettingsDataCloneAPI::BackupSettingsData", "", Fails::Zero, Effect::Failed, "VXCLONE_SETTINGS_DATA"},
    // Of the two parts, only the later one decides.
    {"SettingsDataCloneAPI::RestoreSettingsData", ", 1", Fails::Never, Effect::None, kNone},
    {"SettingsDataCloneAPI::RestoreSettingsData", ", 2", Fails::Zero, Effect::Failed,
     "VXCLONE_SETTINGS_DATA"},
    {"tvtimer_get_db", "", Fails::NotZero, Effect::Failed, "VXCLONE_VXTV_TIMER_DATA"},
    {"tvtimer_set_db", "", Fails::NotZero, Effect::Failed, "VXCLONE_VXTV_TIMER_DATA"},
    {"vx_get_bootlogo_path", "", Fails::Never, Effect::None, kNone},
    {"vx_get_homemenu_path", "", Fails::Never, Effect::None, kNone},
    {"vx_get_mbrlogo_path", "", Fails::Never, Effect::None, kNone},
    {"CSourceAPI::Get", "", Fails::Never, Effect::None, kNone},
    {"CSourceAPI::GetSourceList", "", Fails::Zero, Effect::Failed, "VXCLONE_VXHOTEL_MBR_LOGO"},
    {"CSourceAPI::SetCustomIconPath", "", Fails::Never, Effect::None, kNone},
    {"nsVXSystemInfoAPI::CheckNTPSupport", "", Fails::NotZero, Effect::Failed, "VXCLONE_NTP_SETTINGS_DATA"},
    {"nsVXSystemInfoAPI::SetNTPMode", "", Fails::NotZero, Effect::Failed, "VXCLONE_NTP_SETTINGS_DATA"},
    {"nsVXSystemInfoAPI::GetCurrentTimezone", "", Fails::NotZero, Effect::Failed,
     "VXCLONE_NTP_SETTINGS_DATA"},
    {"nsVXSystemInfoAPI::SetTimezoneInfo", "", Fails::NotZero, Effect::Failed, "VXCLONE_NTP_SETTINGS_DATA"},
    {"nsVXSystemInfoAPI::SetNTPServerAddr", "", Fails::NotZero, Effect::Failed, "VXCLONE_NTP_SETTINGS_DATA"},
};

template <class Rules>
const CallRule* findIn(const Rules& rules, const std::string& call, const std::string& arguments) {
    const auto* const found = std::find_if(std::begin(rules), std::end(rules), [&](const CallRule& rule) {
        return call == rule.call && arguments.find(rule.argument) != std::string::npos;
    });
    return found == std::end(rules) ? nullptr : found;
}

}  // namespace

bool CallRule::isFailure(int status) const {
    switch (fails) {
        case Fails::Never:
            return false;
        case Fails::Always:
            return true;
        case Fails::NotZero:
            return status != 0;
        case Fails::Zero:
            return status == 0;
        case Fails::BelowOne:
            return status < 1;
    }
    return false;
}

const CallRule* findRule(Direction direction, const std::string& call, const std::string& arguments) {
    const CallRule* const special =
        direction == Direction::Restore ? findIn(kRestoreRules, call, arguments) : nullptr;
    return special != nullptr ? special : findIn(kRules, call, arguments);
}

}  // namespace vxtest
