#include "platform/system_info.h"

#include <cstdlib>
#include <cstring>

#include "virtual_tv/platform/passage.h"

namespace {

using namespace vxtv;

int copyOut(const std::string& text, char** place) {
    char* const copy = strdup(text.c_str());
    if (copy == nullptr) {
        return kFailed;
    }
    *place = copy;
    return 0;
}

template <class Value>
int handOut(const Result<Value>& value, Value* place) {
    if (!value) {
        return kFailed;
    }
    *place = *value;
    return 0;
}

}  // namespace

int system_info_get_value_string(system_info_key_e key, char** value) {
    return answer("system_info_get_value_string", {number("key", key)}, kFailed, [&](Television& television) {
        const bool known = key == SYSTEM_INFO_KEY_MODEL || key == SYSTEM_INFO_KEY_PRODUCT_TAG;
        const auto identity = television.systemInformation().identity();
        if (!known || !identity || value == nullptr) {
            return kFailed;
        }
        return copyOut(key == SYSTEM_INFO_KEY_MODEL ? identity->model : identity->productTag, value);
    });
}

int system_info_get_value_int(system_info_key_e key, int* value) {
    return answer("system_info_get_value_int", {number("key", key)}, kFailed, [&](Television& television) {
        const auto identity = television.systemInformation().identity();
        if (key != SYSTEM_INFO_KEY_TUNER_TYPE || !identity || value == nullptr) {
            return kFailed;
        }
        *value = identity->tunerType;
        return 0;
    });
}

int system_info_get_custom_int(const char* key, int* value) {
    return answer("system_info_get_custom_int", {named("key", key)}, kFailed, [&](Television& television) {
        const bool usable = key != nullptr && value != nullptr;
        return usable ? handOut(television.systemInformation().featureInt(key), value) : kFailed;
    });
}

int system_info_get_custom_bool(const char* key, bool* value) {
    return answer("system_info_get_custom_bool", {named("key", key)}, kFailed, [&](Television& television) {
        const bool usable = key != nullptr && value != nullptr;
        return usable ? handOut(television.systemInformation().featureBool(key), value) : kFailed;
    });
}
