#pragma once

#include <array>
#include <string>

namespace vxtest {

enum class SettingType { Int, String, Bool };

/// The settings that must be cloned, in the order of reading and writing. They are repeated here, so that a
/// mistake in the library's own table is found.
struct SettingKey {
    const char* key;
    SettingType type;
};

inline constexpr std::array<SettingKey, 54> kExpectedSettings = {{
    {"db/vxhotel/hotelmenu/welcomemessage", SettingType::String},
    {"db/vxhotel/hotelmenu/serverurl", SettingType::String},
    {"db/hotel/dooreye", SettingType::Bool},
    {"db/vxmenu/system/Alarm/Mode", SettingType::Int},
    {"db/vxmenu/system/Alarm/Time", SettingType::String},
    {"db/vxmenu/system/Alarm/Tone", SettingType::Int},
    {"db/vxmenu/system/Alarm/Volume", SettingType::Int},
    {"db/vxhotel/securitymode/changepin", SettingType::String},
    {"db/vxhotel/welmsg/welcomemsgtitle", SettingType::String},
    {"db/vxhotel/welmsg/welcomemsgbody", SettingType::String},
    {"db/vxhotel/hotelmenu/hotelid", SettingType::String},
    {"db/vxhotel/hotelmenu/hms_serverurl", SettingType::String},
    {"db/vxhotel/hotelmenu/reach_ipsetting", SettingType::String},
    {"db/home/url_launcher/change_url", SettingType::String},
    {"db/homesettings/URLLauncher/TimeOutSettings", SettingType::Int},
    {"db/homesettings/URLLauncher/AppTitle", SettingType::String},
    {"db/vxhotel/hotelmenu/solution_vlanid", SettingType::Int},
    {"db/vxhotel/hotelmenu/device_vlanid", SettingType::Int},
    {"db/menu/network/server_network_settings/ProxyAddress", SettingType::String},
    {"db/menu/network/server_network_settings/ProxyOn", SettingType::Bool},
    {"db/home/url_launcher/AppID", SettingType::String},
    {"db/menu/system/hdmicec/on_off", SettingType::Int},
    {"file/private/sound/feature/SpeakerSelection", SettingType::Int},
    {"db/sdk/develop/mode", SettingType::Int},
    {"db/sdk/develop/ip", SettingType::String},
    {"db/menu/system/time/ontimer1/setup", SettingType::String},
    {"db/menu/system/time/ontimer2/setup", SettingType::String},
    {"db/menu/system/time/ontimer3/setup", SettingType::String},
    {"db/menu/system/time/ontimer1/time", SettingType::String},
    {"db/menu/system/time/ontimer2/time", SettingType::String},
    {"db/menu/system/time/ontimer3/time", SettingType::String},
    {"db/menu/system/time/ontimer1/manual", SettingType::Int},
    {"db/menu/system/time/ontimer2/manual", SettingType::Int},
    {"db/menu/system/time/ontimer3/manual", SettingType::Int},
    {"db/menu/system/time/ontimer1/timer_id", SettingType::Int},
    {"db/menu/system/time/ontimer2/timer_id", SettingType::Int},
    {"db/menu/system/time/ontimer3/timer_id", SettingType::Int},
    {"db/menu/system/time/offtimer1/setup", SettingType::String},
    {"db/menu/system/time/offtimer2/setup", SettingType::String},
    {"db/menu/system/time/offtimer3/setup", SettingType::String},
    {"db/menu/system/time/offtimer1/time", SettingType::String},
    {"db/menu/system/time/offtimer2/time", SettingType::String},
    {"db/menu/system/time/offtimer3/time", SettingType::String},
    {"db/menu/system/time/offtimer1/manual", SettingType::Int},
    {"db/menu/system/time/offtimer2/manual", SettingType::Int},
    {"db/menu/system/time/offtimer3/manual", SettingType::Int},
    {"db/menu/system/time/offtimer1/timer_id", SettingType::Int},
    {"db/menu/system/time/offtimer2/timer_id", SettingType::Int},
    {"db/menu/system/time/offtimer3/timer_id", SettingType::Int},
    {"db/source-list/source-name", SettingType::String},
    {"db/vxhotel/hotelmenu/appid", SettingType::String},
    {"db/menu/system/time/ntp/ntp_mode", SettingType::Int},
    {"db/menu/system/time/ntp/server_url", SettingType::String},
    {"db/menu/system/time/ntp/timezone", SettingType::Int},
}};

}  // namespace vxtest
