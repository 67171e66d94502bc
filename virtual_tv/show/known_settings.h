#pragma once

#include <string_view>

namespace vxtv::show {

// The settings that a page shows in a special way. A television need not have them.
inline constexpr std::string_view kProgressKey = "db/hotel/clone_progress";
inline constexpr std::string_view kResultKey = "db/hotel/clone_result";
inline constexpr std::string_view kWelcomeMessageKey = "db/vxhotel/hotelmenu/welcomemessage";
inline constexpr std::string_view kWelcomeTitleKey = "db/vxhotel/welmsg/welcomemsgtitle";
inline constexpr std::string_view kWelcomeBodyKey = "db/vxhotel/welmsg/welcomemsgbody";

/// Keys with the same beginning, and their heading.
struct SettingGroup {
    std::string_view prefix;
    std::string_view title;
    bool isTable = false;  ///< the rest of each key is "item/field"
};

/// The first match counts; the last entry matches all keys.
inline constexpr SettingGroup kSettingGroups[] = {
    {"db/vxhotel/hotelmenu/", "Hotel menu"},
    {"db/vxhotel/welmsg/", "Welcome message"},
    {"db/vxhotel/securitymode/", "Security"},
    {"db/vxmenu/system/Alarm/", "Alarm"},
    {"db/menu/system/time/ntp/", "Clock"},
    {"db/menu/system/time/", "On and off timers", true},
    {"db/menu/network/server_network_settings/", "Network"},
    {"db/home/url_launcher/", "Address launcher"},
    {"db/homesettings/URLLauncher/", "Address launcher, look"},
    {"db/sdk/develop/", "Development"},
    {"", "Everything else"},
};

}  // namespace vxtv::show
