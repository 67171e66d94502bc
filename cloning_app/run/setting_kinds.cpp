#include "cloning_app/run/setting_kinds.h"

#include <algorithm>
#include <array>

namespace vxclone {

namespace {

struct Kind {
    std::string_view key;
    SettingKind kind;
};

/// Every setting that is not ordinary: addresses, networks and numbers that a television was given for
/// itself, what it is used for while somebody develops on it, and what opens it.
constexpr std::array kKinds = {
    Kind{"db/vxhotel/securitymode/changepin", SettingKind::Secret},
    Kind{"db/vxhotel/hotelmenu/reach_ipsetting", SettingKind::Identity},
    Kind{"db/vxhotel/hotelmenu/device_vlanid", SettingKind::Identity},
    Kind{"db/sdk/develop/mode", SettingKind::Identity},
    Kind{"db/sdk/develop/ip", SettingKind::Identity},
    Kind{"db/menu/system/time/ontimer1/timer_id", SettingKind::Identity},
    Kind{"db/menu/system/time/ontimer2/timer_id", SettingKind::Identity},
    Kind{"db/menu/system/time/ontimer3/timer_id", SettingKind::Identity},
    Kind{"db/menu/system/time/offtimer1/timer_id", SettingKind::Identity},
    Kind{"db/menu/system/time/offtimer2/timer_id", SettingKind::Identity},
    Kind{"db/menu/system/time/offtimer3/timer_id", SettingKind::Identity},
};

constexpr std::array<std::string_view, 3> kKindNames = {"ordinary", "identity", "secret"};

}  // namespace

SettingKind kindOf(std::string_view key) {
    const auto* const found =
        std::find_if(kKinds.begin(), kKinds.end(), [key](const Kind& kind) { return kind.key == key; });
    return found == kKinds.end() ? SettingKind::Ordinary : found->kind;
}

std::vector<std::string> keysOfKind(SettingKind kind) {
    std::vector<std::string> keys;
    for (const Kind& candidate : kKinds) {
        if (candidate.kind == kind) {
            keys.emplace_back(candidate.key);
        }
    }
    return keys;
}

std::string_view nameOf(SettingKind kind) {
    return kKindNames.at(static_cast<std::size_t>(kind));
}

}  // namespace vxclone
