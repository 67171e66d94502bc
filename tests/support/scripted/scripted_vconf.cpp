#include <cstring>

#include "platform/vconf.h"
#include "tests/support/scripted/answering.h"

using namespace vxtest;

namespace {

/// The setting, if the store holds the key with this type.
template <class Type>
Type* find(ScriptedPlatform::State& state, const char* key) {
    const auto found = state.settings.find(key);
    return found == state.settings.end() ? nullptr : std::get_if<Type>(&found->second);
}

template <class Type>
int store(const char* key, Type value) {
    return platform().locked([&](ScriptedPlatform::State& state) {
        Type* const held = find<Type>(state, key);
        if (held == nullptr) {
            return -1;
        }
        *held = value;
        return 0;
    });
}

}  // namespace

int vconf_get_int(const char* key, int* value) {
    return answered("vconf_get_int", quoted(key), [&] {
        return platform().locked([&](ScriptedPlatform::State& state) {
            const int* const held = find<int>(state, key);
            if (held == nullptr) {
                return -1;
            }
            *value = *held;
            return 0;
        });
    });
}

int vconf_set_int(const char* key, int value) {
    return answered("vconf_set_int", fmt::format("{}, {}", quoted(key), value),
                    [&] { return store(key, value); });
}

int vconf_get_bool(const char* key, int* value) {
    return answered("vconf_get_bool", quoted(key), [&] {
        return platform().locked([&](ScriptedPlatform::State& state) {
            const BoolSetting* const held = find<BoolSetting>(state, key);
            if (held == nullptr) {
                return -1;
            }
            *value = held->value;
            return 0;
        });
    });
}

int vconf_set_bool(const char* key, int value) {
    return answered("vconf_set_bool", fmt::format("{}, {}", quoted(key), value),
                    [&] { return value == 0 || value == 1 ? store(key, BoolSetting{value}) : -1; });
}

char* vconf_get_str(const char* key) {
    return answeredPointer("vconf_get_str", quoted(key), [&] {
        return platform().locked([&](ScriptedPlatform::State& state) {
            const std::string* const held = find<std::string>(state, key);
            return held == nullptr ? nullptr : strdup(held->c_str());
        });
    });
}

int vconf_set_str(const char* key, const char* value) {
    return answered("vconf_set_str", fmt::format("{}, {}", quoted(key), quoted(value)),
                    [&] { return store(key, std::string(value)); });
}
