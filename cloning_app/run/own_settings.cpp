#include "cloning_app/run/own_settings.h"

#include <algorithm>
#include <utility>

#include "cloning_app/run/setting_kinds.h"
#include "cloning_app/run/settings_store.h"

namespace vxclone {

namespace {

using Value = decltype(Setting::value);

Value readAs(SettingType type, const std::string& key) {
    if (type == SettingType::Int) {
        const auto number = store::readInt(key);
        return number ? Value(Setting::Int{*number}) : Value();
    }
    if (type == SettingType::Bool) {
        const auto flag = store::readBool(key);
        return flag ? Value(Setting::Bool{*flag}) : Value();
    }
    auto text = store::readString(key);
    return text ? Value(std::move(*text)) : Value();
}

bool isNone(const Value& value) {
    return std::holds_alternative<std::monostate>(value);
}

struct Write {
    const std::string& key;

    bool operator()(const std::monostate& /*none*/) const { return true; }
    bool operator()(const Setting::Int& value) const { return store::writeInt(key, value.value); }
    bool operator()(const Setting::Bool& value) const { return store::writeBool(key, value.value); }
    bool operator()(const std::string& value) const { return store::writeString(key, value); }
};

}  // namespace

OwnSettings ownSettings(const std::vector<std::string>& keys) {
    OwnSettings own;
    for (const std::string& key : keys) {
        const SettingFacts* const facts = clonedSetting(key);
        Value value = facts == nullptr ? Value() : readAs(facts->type, key);
        if (facts != nullptr && isNone(value)) {
            value = readAs(facts->type, key);
        }
        if (isNone(value)) {
            own.unreadable.push_back(key);
        } else {
            own.values.push_back({key, std::move(value)});
        }
    }
    return own;
}

std::vector<std::string> identityKeys() {
    std::vector<std::string> keys = keysOfKind(SettingKind::Identity);
    const std::vector<std::string> secrets = keysOfKind(SettingKind::Secret);
    keys.insert(keys.end(), secrets.begin(), secrets.end());
    return keys;
}

std::vector<Setting> identityOfTelevision() {
    return ownSettings(identityKeys()).values;
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
