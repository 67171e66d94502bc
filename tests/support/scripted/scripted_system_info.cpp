#include <cstring>

#include "platform/system_info.h"
#include "tests/support/scripted/answering.h"

using namespace vxtest;

namespace {

template <class Value>
int readFeature(const char* call, const char* key, Value* value) {
    return answered(call, quoted(key), [&] {
        return platform().locked([&](ScriptedPlatform::State& state) {
            const auto found = state.features.find(key);
            if (found == state.features.end()) {
                return -1;
            }
            *value = static_cast<Value>(found->second);
            return 0;
        });
    });
}

}  // namespace

int system_info_get_value_string(system_info_key_e key, char** value) {
    return answered("system_info_get_value_string", std::to_string(key), [&] {
        return platform().locked([&](ScriptedPlatform::State& state) {
            if (key != SYSTEM_INFO_KEY_MODEL && key != SYSTEM_INFO_KEY_PRODUCT_TAG) {
                return -1;
            }
            *value = strdup((key == SYSTEM_INFO_KEY_MODEL ? state.model : state.productTag).c_str());
            return 0;
        });
    });
}

int system_info_get_value_int(system_info_key_e key, int* value) {
    return answered("system_info_get_value_int", std::to_string(key), [&] {
        return platform().locked([&](ScriptedPlatform::State& state) {
            if (key != SYSTEM_INFO_KEY_TUNER_TYPE) {
                return -1;
            }
            *value = state.tunerType;
            return 0;
        });
    });
}

int system_info_get_custom_int(const char* key, int* value) {
    return readFeature("system_info_get_custom_int", key, value);
}

int system_info_get_custom_bool(const char* key, bool* value) {
    return readFeature("system_info_get_custom_bool", key, value);
}
