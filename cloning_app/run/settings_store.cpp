#include "cloning_app/run/settings_store.h"

#include <cstdlib>
#include <memory>

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

}  // namespace vxclone
