#include "cloning_app/run/setting_value.h"

#include "cloning_app/run/setting_kinds.h"
#include "cloning_app/run/settings_store.h"

namespace vxclone {

namespace {

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

}  // namespace

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

}  // namespace vxclone
