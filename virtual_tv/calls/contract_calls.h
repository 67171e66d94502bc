#pragma once

#include <cstddef>
#include <iterator>
#include <optional>
#include <string_view>

namespace vxtv {

/// The possible effects of a fault on a platform call.
enum class CallKind {
    CanFail,    ///< it reports failures by a status, a bool or a null
    NeverFails  ///< it always succeeds, so a fault can only delay it
};

/// Whether the first argument of a call in the call log is a text, so that a fault can select by it.
enum class FirstArgument { Text, NoText };

/// A platform call that a fault can affect. The name of a C++ operation contains its class or innermost
/// namespace: "CSourceAPI::GetSourceList".
struct ContractCall {
    std::string_view name;
    CallKind kind;
    FirstArgument firstArgument;
};

/// The call of that name; empty if the platform has no such call, or if a fault cannot affect it.
std::optional<ContractCall> findCall(std::string_view name);

/// The name of a platform call in our own code. An unknown name does not compile.
class KnownCall {
 public:
    consteval KnownCall(const char* name);
    std::string_view name() const { return name_; }

 private:
    std::string_view name_;
};

namespace detail {

/// Every platform call that returns something. A call without a result cannot fail and needs no delay, and
/// the logger has its own log.
inline constexpr ContractCall kContractCalls[] = {
    {"CCCategoryUtil::GetInstance", CallKind::NeverFails, FirstArgument::NoText},
    {"CCCategoryUtil::GetNavigationList", CallKind::CanFail, FirstArgument::NoText},
    {"CCCategoryUtil::RemoveNavigation", CallKind::CanFail, FirstArgument::NoText},
    {"CHomeDataControlAPI::CopyCloneDataTVtoUSB", CallKind::CanFail, FirstArgument::Text},
    {"CHomeDataControlAPI::CopyCloneDataUSBtoTV", CallKind::CanFail, FirstArgument::Text},
    {"CHomeDataControlAPI::GetInstance", CallKind::CanFail, FirstArgument::NoText},
    {"CSourceAPI::Get", CallKind::NeverFails, FirstArgument::NoText},
    {"CSourceAPI::GetSourceList", CallKind::CanFail, FirstArgument::NoText},
    {"CSourceAPI::SetCustomIconPath", CallKind::CanFail, FirstArgument::NoText},
    {"IB2BControl::ExportChannelMap", CallKind::CanFail, FirstArgument::Text},
    {"IUtil::ExportChannelMap", CallKind::CanFail, FirstArgument::Text},
    {"IUtil::ImportChannelMap", CallKind::CanFail, FirstArgument::Text},
    {"SettingsDataCloneAPI::BackupSettingsData", CallKind::CanFail, FirstArgument::Text},
    {"SettingsDataCloneAPI::RestoreSettingsData", CallKind::CanFail, FirstArgument::Text},
    {"TVServiceAPI::CreateB2BControl", CallKind::CanFail, FirstArgument::NoText},
    {"TVServiceAPI::CreateServiceNavigation", CallKind::CanFail, FirstArgument::NoText},
    {"TVServiceAPI::CreateUtil", CallKind::CanFail, FirstArgument::NoText},
    {"aul_app_is_running", CallKind::CanFail, FirstArgument::Text},
    {"aul_launch_app", CallKind::CanFail, FirstArgument::Text},
    {"avoc_backup_all_settings", CallKind::CanFail, FirstArgument::Text},
    {"avoc_restore_all_settings", CallKind::CanFail, FirstArgument::Text},
    {"bundle_add", CallKind::CanFail, FirstArgument::Text},
    {"bundle_add_str", CallKind::CanFail, FirstArgument::Text},
    {"bundle_create", CallKind::CanFail, FirstArgument::NoText},
    {"bundle_free", CallKind::CanFail, FirstArgument::NoText},
    {"bundle_get_str", CallKind::CanFail, FirstArgument::Text},
    {"factory_clone_tv_to_usb", CallKind::CanFail, FirstArgument::NoText},
    {"factory_clone_usb_to_tv", CallKind::CanFail, FirstArgument::NoText},
    {"message_port_check_remote_port", CallKind::CanFail, FirstArgument::Text},
    {"message_port_register_local_port", CallKind::CanFail, FirstArgument::Text},
    {"message_port_send_message_with_local_port", CallKind::CanFail, FirstArgument::Text},
    {"nsVXSystemInfoAPI::CheckNTPSupport", CallKind::CanFail, FirstArgument::NoText},
    {"nsVXSystemInfoAPI::GetCurrentTimezone", CallKind::CanFail, FirstArgument::NoText},
    {"nsVXSystemInfoAPI::SetNTPMode", CallKind::CanFail, FirstArgument::NoText},
    {"nsVXSystemInfoAPI::SetNTPServerAddr", CallKind::CanFail, FirstArgument::Text},
    {"nsVXSystemInfoAPI::SetTimezoneInfo", CallKind::CanFail, FirstArgument::NoText},
    {"ss_init_credential", CallKind::NeverFails, FirstArgument::NoText},
    {"ss_read", CallKind::CanFail, FirstArgument::NoText},
    {"system_info_get_custom_bool", CallKind::CanFail, FirstArgument::Text},
    {"system_info_get_custom_int", CallKind::CanFail, FirstArgument::Text},
    {"system_info_get_value_int", CallKind::CanFail, FirstArgument::NoText},
    {"system_info_get_value_string", CallKind::CanFail, FirstArgument::NoText},
    {"tvtimer_get_db", CallKind::CanFail, FirstArgument::Text},
    {"tvtimer_init", CallKind::CanFail, FirstArgument::NoText},
    {"tvtimer_set_db", CallKind::CanFail, FirstArgument::Text},
    {"vconf_get_bool", CallKind::CanFail, FirstArgument::Text},
    {"vconf_get_int", CallKind::CanFail, FirstArgument::Text},
    {"vconf_get_str", CallKind::CanFail, FirstArgument::Text},
    {"vconf_set_bool", CallKind::CanFail, FirstArgument::Text},
    {"vconf_set_int", CallKind::CanFail, FirstArgument::Text},
    {"vconf_set_str", CallKind::CanFail, FirstArgument::Text},
    {"vx_get_bootlogo_path", CallKind::NeverFails, FirstArgument::NoText},
    {"vx_get_homemenu_path", CallKind::NeverFails, FirstArgument::NoText},
    {"vx_get_mbrlogo_path", CallKind::NeverFails, FirstArgument::NoText},
    {"was_clone_backup", CallKind::CanFail, FirstArgument::NoText},
    {"was_clone_restore", CallKind::CanFail, FirstArgument::NoText},
    {"wqd_install_from_file", CallKind::CanFail, FirstArgument::Text},
};

/// The index of the call in the table, or the size of the table.
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
