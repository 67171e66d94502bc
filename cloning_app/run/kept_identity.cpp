#include "cloning_app/run/kept_identity.h"

#include <algorithm>

#include "cloning_app/run/setting_kinds.h"
#include "cloning_app/run/settings_store.h"

namespace vxclone {

namespace {

/// The store tells no type, but reads a key as its own type alone.
Setting readAsItIs(const std::string& key) {
    if (const auto number = store::readInt(key)) {
        return {key, Setting::Int{*number}};
    }
    if (const auto flag = store::readBool(key)) {
        return {key, Setting::Bool{*flag}};
    }
    if (auto text = store::readString(key)) {
        return {key, std::move(*text)};
    }
    return {key, {}};
}

struct Write {
    const std::string& key;

    bool operator()(const std::monostate& /*none*/) const { return true; }
    bool operator()(const Setting::Int& value) const { return store::writeInt(key, value.value); }
    bool operator()(const Setting::Bool& value) const { return store::writeBool(key, value.value); }
    bool operator()(const std::string& value) const { return store::writeString(key, value); }
};

}  // namespace

std::vector<Setting> identityOfTelevision() {
    std::vector<Setting> settings;
    for (const SettingKind kind : {SettingKind::Identity, SettingKind::Secret}) {
        for (const std::string& key : keysOfKind(kind)) {
            Setting setting = readAsItIs(key);
            if (!std::holds_alternative<std::monostate>(setting.value)) {
                settings.push_back(std::move(setting));
            }
        }
    }
    return settings;
}

std::vector<std::string> writeBack(const std::vector<Setting>& settings) {
    for (const Setting& setting : settings) {
        std::visit(Write{setting.key}, setting.value);
    }
    return settingsNotApplied(settings);
}

std::vector<Setting> withoutKept(std::vector<Setting> settings, const std::vector<Setting>& kept) {
    settings.erase(std::remove_if(settings.begin(), settings.end(),
                                  [&kept](const Setting& setting) {
                                      return std::any_of(kept.begin(), kept.end(), [&](const Setting& each) {
                                          return each.key == setting.key;
                                      });
                                  }),
                   settings.end());
    return settings;
}

}  // namespace vxclone
