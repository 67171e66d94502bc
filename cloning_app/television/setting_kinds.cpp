#include "cloning_app/television/setting_kinds.h"

#include <algorithm>
#include <array>

namespace vxclone {

namespace {

constexpr std::array kSettings = {
    SettingFacts{"db/vxhotel/hotelmenu/welcomemessage", SettingType::Text, SettingKind::Ordinary},
    SettingFacts{"db/vxhotel/hotelmenu/serverurl", SettingType::Text, SettingKind::Ordinary},
    SettingFacts{"db/hotel/dooreye", SettingType::Bool, SettingKind::Ordinary},
    SettingFacts{"db/vxmenu/system/Alarm/Mode", SettingType::Int, SettingKind::Ordinary},
    SettingFacts{"db/vxmenu/system/Alarm/Time", SettingType::Text, SettingKind::Ordinary},
    SettingFacts{"db/vxmenu/system/Alarm/Tone", SettingType::Int, SettingKind::Ordinary},
    SettingFacts{"db/vxmenu/system/Alarm/Volume", SettingType::Int, SettingKind::Ordinary},
    SettingFacts{"db/vxhotel/securitymode/changepin", SettingType::Text, SettingKind::Secret},
    SettingFacts{"db/vxhotel/welmsg/welcomemsgtitle", SettingType::Text, SettingKind::Ordinary},
    SettingFacts{"db/vxhotel/welmsg/welcomemsgbody", SettingType::Text, SettingKind::Ordinary},
    SettingFacts{"db/vxhotel/hotelmenu/hotelid", SettingType::Text, SettingKind::Ordinary},
    SettingFacts{"db/vxhotel/hotelmenu/hms_serverurl", SettingType::Text, SettingKind::Ordinary},
    SettingFacts{"db/vxhotel/hotelmenu/reach_ipsetting", SettingType::Text, SettingKind::Identity},
    SettingFacts{"db/home/url_launcher/change_url", SettingType::Text, SettingKind::Ordinary},
    SettingFacts{"db/homesettings/URLLauncher/TimeOutSettings", SettingType::Int, SettingKind::Ordinary},
    SettingFacts{"db/homesettings/URLLauncher/AppTitle", SettingType::Text, SettingKind::Ordinary},
    SettingFacts{"db/vxhotel/hotelmenu/solution_vlanid", SettingType::Int, SettingKind::Ordinary},
    SettingFacts{"db/vxhotel/hotelmenu/device_vlanid", SettingType::Int, SettingKind::Identity},
    SettingFacts{"db/menu/network/server_network_settings/ProxyAddress", SettingType::Text,
                 SettingKind::Ordinary},
    SettingFacts{"db/menu/network/server_network_settings/ProxyOn", SettingType::Bool, SettingKind::Ordinary},
    SettingFacts{"db/home/url_launcher/AppID", SettingType::Text, SettingKind::Ordinary},
    SettingFacts{"db/menu/system/hdmicec/on_off", SettingType::Int, SettingKind::Ordinary},
    SettingFacts{"file/private/sound/feature/SpeakerSelection", SettingType::Int, SettingKind::Ordinary},
    SettingFacts{"db/sdk/develop/mode", SettingType::Int, SettingKind::Identity},
    SettingFacts{"db/sdk/develop/ip", SettingType::Text, SettingKind::Identity},
    SettingFacts{"db/menu/system/time/ontimer1/setup", SettingType::Text, SettingKind::Ordinary},
    SettingFacts{"db/menu/system/time/ontimer2/setup", SettingType::Text, SettingKind::Ordinary},
    SettingFacts{"db/menu/system/time/ontimer3/setup", SettingType::Text, SettingKind::Ordinary},
    SettingFacts{"db/menu/system/time/ontimer1/time", SettingType::Text, SettingKind::Ordinary},
    SettingFacts{"db/menu/system/time/ontimer2/time", SettingType::Text, SettingKind::Ordinary},
    SettingFacts{"db/menu/system/time/ontimer3/time", SettingType::Text, SettingKind::Ordinary},
    SettingFacts{"db/menu/system/time/ontimer1/manual", SettingType::Int, SettingKind::Ordinary},
    SettingFacts{"db/menu/system/time/ontimer2/manual", SettingType::Int, SettingKind::Ordinary},
    SettingFacts{"db/menu/system/time/ontimer3/manual", SettingType::Int, SettingKind::Ordinary},
    SettingFacts{"db/menu/system/time/ontimer1/timer_id", SettingType::Int, SettingKind::Identity},
    SettingFacts{"db/menu/system/time/ontimer2/timer_id", SettingType::Int, SettingKind::Identity},
    SettingFacts{"db/menu/system/time/ontimer3/timer_id", SettingType::Int, SettingKind::Identity},
    SettingFacts{"db/menu/system/time/offtimer1/setup", SettingType::Text, SettingKind::Ordinary},
    SettingFacts{"db/menu/system/time/offtimer2/setup", SettingType::Text, SettingKind::Ordinary},
    SettingFacts{"db/menu/system/time/offtimer3/setup", SettingType::Text, SettingKind::Ordinary},
    SettingFacts{"db/menu/system/time/offtimer1/time", SettingType::Text, SettingKind::Ordinary},
    SettingFacts{"db/menu/system/time/offtimer2/time", SettingType::Text, SettingKind::Ordinary},
    SettingFacts{"db/menu/system/time/offtimer3/time", SettingType::Text, SettingKind::Ordinary},
    SettingFacts{"db/menu/system/time/offtimer1/manual", SettingType::Int, SettingKind::Ordinary},
    SettingFacts{"db/menu/system/time/offtimer2/manual", SettingType::Int, SettingKind::Ordinary},
    SettingFacts{"db/menu/system/time/offtimer3/manual", SettingType::Int, SettingKind::Ordinary},
    SettingFacts{"db/menu/system/time/offtimer1/timer_id", SettingType::Int, SettingKind::Identity},
    SettingFacts{"db/menu/system/time/offtimer2/timer_id", SettingType::Int, SettingKind::Identity},
    SettingFacts{"db/menu/system/time/offtimer3/timer_id", SettingType::Int, SettingKind::Identity},
    SettingFacts{"db/source-list/source-name", SettingType::Text, SettingKind::Ordinary},
    SettingFacts{"db/vxhotel/hotelmenu/appid", SettingType::Text, SettingKind::Ordinary},
    SettingFacts{"db/menu/system/time/ntp/ntp_mode", SettingType::Int, SettingKind::Ordinary},
    SettingFacts{"db/menu/system/time/ntp/server_url", SettingType::Text, SettingKind::Ordinary},
    SettingFacts{"db/menu/system/time/ntp/timezone", SettingType::Int, SettingKind::Ordinary},
};

static_assert(kSettings.size() == kSettingCount);

constexpr std::array<std::string_view, 3> kKindNames = {"ordinary", "identity", "secret"};

static_assert(kKindNames.size() == static_cast<std::size_t>(SettingKind::Secret) + 1);

}  // namespace

std::span<const SettingFacts> clonedSettings() {
    return kSettings;
}

const SettingFacts* clonedSetting(std::string_view key) {
    const auto* const found = std::find_if(kSettings.begin(), kSettings.end(),
                                           [key](const SettingFacts& setting) { return setting.key == key; });
    return found == kSettings.end() ? nullptr : found;
}

SettingKind kindOf(std::string_view key) {
    const SettingFacts* const setting = clonedSetting(key);
    return setting == nullptr ? SettingKind::Ordinary : setting->kind;
}

std::vector<std::string> keysOfKind(SettingKind kind) {
    std::vector<std::string> keys;
    for (const SettingFacts& setting : kSettings) {
        if (setting.kind == kind) {
            keys.emplace_back(setting.key);
        }
    }
    return keys;
}

bool hasTypeOf(const SettingFacts& facts, const Setting& setting) {
    switch (facts.type) {
        case SettingType::Int:
            return std::holds_alternative<Setting::Int>(setting.value);
        case SettingType::Bool:
            return std::holds_alternative<Setting::Bool>(setting.value);
        case SettingType::Text:
            break;
    }
    return std::holds_alternative<std::string>(setting.value);
}

std::string_view nameOf(SettingKind kind) {
    return kKindNames.at(static_cast<std::size_t>(kind));
}

}  // namespace vxclone
