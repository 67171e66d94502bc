#pragma once

#include <cstddef>
#include <iterator>
#include <optional>
#include <string_view>

namespace vxtv {

/// What a fault can do to a platform call.
enum class CallKind {
    CanFail,    ///< its caller is told of a failure, by a status, a bool or a null
    NeverFails  ///< its caller is promised a result: a fault can only delay it
};

/// The kind of the call, or nothing when the platform has no call of that name that a fault can reach. C++
/// operations carry their class or innermost namespace: "CSourceAPI::GetSourceList".
std::optional<CallKind> findCall(std::string_view name);

/// The name of a platform call in our own code. A name that the platform does not have does not compile.
class KnownCall {
 public:
    consteval KnownCall(const char* name);
    std::string_view name() const { return name_; }

 private:
    std::string_view name_;
};

namespace detail {

struct ContractCall {
    std::string_view name;
    CallKind kind;
};

/// Every call of the platform that returns something; what returns nothing can neither fail nor needs a
/// delay, and the logger keeps its own log.
inline constexpr ContractCall kContractCalls[] = {
    {"CCCategoryUtil::GetInstance", CallKind::NeverFails},
    {"CCCategoryUtil::GetNavigationList", CallKind::CanFail},
    {"CCCategoryUtil::RemoveNavigation", CallKind::CanFail},
    {"CHomeDataControlAPI::CopyCloneDataTVtoUSB", CallKind::CanFail},
    {"CHomeDataControlAPI::CopyCloneDataUSBtoTV", CallKind::CanFail},
    {"CHomeDataControlAPI::GetInstance", CallKind::CanFail},
    {"CSourceAPI::Get", CallKind::NeverFails},
    {"CSourceAPI::GetSourceList", CallKind::CanFail},
    {"CSourceAPI::SetCustomIconPath", CallKind::CanFail},
    {"IB2BControl::ExportChannelMap", CallKind::CanFail},
    {"IUtil::ExportChannelMap", CallKind::CanFail},
    {"IUtil::ImportChannelMap", CallKind::CanFail},
    {"SettingsDataCloneAPI::BackupSettingsData", CallKind::CanFail},
    {"SettingsDataCloneAPI::RestoreSettingsData", CallKind::CanFail},
    {"TVServiceAPI::CreateB2BControl", CallKind::CanFail},
    {"TVServiceAPI::CreateServiceNavigation", CallKind::CanFail},
    {"TVServiceAPI::CreateUtil", CallKind::CanFail},
    {"aul_app_is_running", CallKind::CanFail},
    {"aul_launch_app", CallKind::CanFail},
    {"avoc_backup_all_settings", CallKind::CanFail},
    {"avoc_restore_all_settings", CallKind::CanFail},
    {"bundle_add", CallKind::CanFail},
    {"bundle_add_str", CallKind::CanFail},
    {"bundle_create", CallKind::CanFail},
    {"bundle_free", CallKind::CanFail},
    {"bundle_get_str", CallKind::CanFail},
    {"factory_clone_tv_to_usb", CallKind::CanFail},
    {"factory_clone_usb_to_tv", CallKind::CanFail},
    {"message_port_check_remote_port", CallKind::CanFail},
    {"message_port_register_local_port", CallKind::CanFail},
    {"message_port_send_message_with_local_port", CallKind::CanFail},
    {"nsVXSystemInfoAPI::CheckNTPSupport", CallKind::CanFail},
    {"nsVXSystemInfoAPI::GetCurrentTimezone", CallKind::CanFail},
    {"nsVXSystemInfoAPI::SetNTPMode", CallKind::CanFail},
    {"nsVXSystemInfoAPI::SetNTPServerAddr", CallKind::CanFail},
    {"nsVXSystemInfoAPI::SetTimezoneInfo", CallKind::CanFail},
    {"ss_init_credential", CallKind::NeverFails},
    {"ss_read", CallKind::CanFail},
    {"system_info_get_custom_bool", CallKind::CanFail},
    {"system_info_get_custom_int", CallKind::CanFail},
    {"system_info_get_value_int", CallKind::CanFail},
    {"system_info_get_value_string", CallKind::CanFail},
    {"tvtimer_get_db", CallKind::CanFail},
    {"tvtimer_init", CallKind::CanFail},
    {"tvtimer_set_db", CallKind::CanFail},
    {"vconf_get_bool", CallKind::CanFail},
    {"vconf_get_int", CallKind::CanFail},
    {"vconf_get_str", CallKind::CanFail},
    {"vconf_set_bool", CallKind::CanFail},
    {"vconf_set_int", CallKind::CanFail},
    {"vconf_set_str", CallKind::CanFail},
    {"vx_get_bootlogo_path", CallKind::NeverFails},
    {"vx_get_homemenu_path", CallKind::NeverFails},
    {"vx_get_mbrlogo_path", CallKind::NeverFails},
    {"was_clone_backup", CallKind::CanFail},
    {"was_clone_restore", CallKind::CanFail},
    {"wqd_install_from_file", CallKind::CanFail},
};

/// The place of the call in the table, or the table's size.
constexpr std::size_t placeOf(std::string_view name) {
    std::size_t place = 0;
    while (place < std::size(kContractCalls) && kContractCalls[place].name.compare(name) != 0) {
        ++place;
    }
    return place;
}

}  // namespace detail

consteval KnownCall::KnownCall(const char* name) : name_(name) {
    if (detail::placeOf(name) == std::size(detail::kContractCalls)) {
        throw "the platform has no such call";
    }
}

}  // namespace vxtv
