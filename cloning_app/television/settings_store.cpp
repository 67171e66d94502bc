#include "cloning_app/television/settings_store.h"

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <utility>

#include "cloning_app/television/setting_kinds.h"
#include "platform/vconf.h"

namespace vxclone {

namespace {

struct Free {
    void operator()(char* text) const { std::free(text); }
};

/// Whether the store holds the value of the setting.
struct IsHeld {
    const std::string& key;

    bool operator()(const std::monostate& /*none*/) const { return false; }
    bool operator()(const Setting::Int& wanted) const { return store::readInt(key) == wanted.value; }
    bool operator()(const Setting::Bool& wanted) const { return store::readBool(key) == wanted.value; }
    bool operator()(const std::string& wanted) const { return store::readString(key) == wanted; }
};

using Json = nlohmann::ordered_json;
using Value = decltype(Setting::value);

struct AsJson {
    Json operator()(const std::monostate& /*none*/) const { return {}; }
    Json operator()(const Setting::Int& value) const { return value.value; }
    Json operator()(const Setting::Bool& value) const { return value.value; }
    Json operator()(const std::string& value) const { return value; }
};

struct ReadLike {
    const std::string& key;

    Value operator()(const std::monostate& /*none*/) const { return {}; }
    Value operator()(const Setting::Int& /*like*/) const {
        const auto value = store::readInt(key);
        return value ? Value(Setting::Int{*value}) : Value();
    }
    Value operator()(const Setting::Bool& /*like*/) const {
        const auto value = store::readBool(key);
        return value ? Value(Setting::Bool{*value}) : Value();
    }
    Value operator()(const std::string& /*like*/) const {
        auto value = store::readString(key);
        return value ? Value(std::move(*value)) : Value();
    }
};

bool isSet(const Setting& setting) {
    const auto* const text = std::get_if<std::string>(&setting.value);
    return text == nullptr || !text->empty();
}

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

namespace store {

std::optional<int> readInt(const std::string& key) {
    int value = 0;
    return vconf_get_int(key.c_str(), &value) == 0 ? std::optional(value) : std::nullopt;
}

std::optional<bool> readBool(const std::string& key) {
    int value = 0;
    return vconf_get_bool(key.c_str(), &value) == 0 ? std::optional(value != 0) : std::nullopt;
}

std::optional<std::string> readString(const std::string& key) {
    const std::unique_ptr<char, Free> text(vconf_get_str(key.c_str()));
    return text ? std::optional<std::string>(text.get()) : std::nullopt;
}

bool writeInt(const std::string& key, int value) {
    return vconf_set_int(key.c_str(), value) == 0;
}

bool writeBool(const std::string& key, bool value) {
    return vconf_set_bool(key.c_str(), value ? 1 : 0) == 0;
}

bool writeString(const std::string& key, const std::string& value) {
    return vconf_set_str(key.c_str(), value.c_str()) == 0;
}

}  // namespace store

std::vector<std::string> settingsNotApplied(const std::vector<Setting>& settings) {
    std::vector<std::string> keys;
    for (const Setting& setting : settings) {
        if (!std::visit(IsHeld{setting.key}, setting.value)) {
            keys.push_back(setting.key);
        }
    }
    return keys;
}

Json jsonValue(const Setting& setting) {
    if (kindOf(setting.key) == SettingKind::Secret) {
        return isSet(setting) ? "(set)" : "(not set)";
    }
    return std::visit(AsJson{}, setting.value);
}

std::string shownValue(const Setting& setting) {
    const Json value = jsonValue(setting);
    if (value.is_null()) {
        return "(no value)";
    }
    if (!value.is_string() || kindOf(setting.key) == SettingKind::Secret) {
        return value.is_string() ? value.get<std::string>() : value.dump();
    }
    return "\"" + value.get<std::string>() + "\"";
}

bool sameValue(const Setting& one, const Setting& other) {
    return std::visit(AsJson{}, one.value) == std::visit(AsJson{}, other.value);
}

std::vector<Setting> settingsOfTelevision(const std::vector<Setting>& settings) {
    std::vector<Setting> live;
    for (const Setting& setting : settings) {
        live.push_back({setting.key, std::visit(ReadLike{setting.key}, setting.value)});
    }
    return live;
}

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
