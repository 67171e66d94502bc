#include "platform/vconf.h"

#include <cstdlib>
#include <cstring>

#include "virtual_tv/platform/passage.h"

namespace {

using namespace vxtv;

template <class Value>
int handOutSetting(const Result<Value>& value, int* place) {
    if (!value) {
        return kFailed;
    }
    *place = static_cast<int>(*value);
    return 0;
}

int statusOf(const Result<void>& result) {
    return result ? 0 : kFailed;
}

}  // namespace

int vconf_get_int(const char* key, int* value) {
    return answer("vconf_get_int", {named("key", key)}, kFailed, [&](Television& television) {
        return key != nullptr && value != nullptr ? handOutSetting(television.settings().getInt(key), value)
                                                  : kFailed;
    });
}

int vconf_set_int(const char* key, int value) {
    return answer("vconf_set_int", {named("key", key), number("value", value)}, kFailed,
                  [&](Television& television) {
                      return key != nullptr ? statusOf(television.settings().set(key, value)) : kFailed;
                  });
}

int vconf_get_bool(const char* key, int* value) {
    return answer("vconf_get_bool", {named("key", key)}, kFailed, [&](Television& television) {
        return key != nullptr && value != nullptr ? handOutSetting(television.settings().getBool(key), value)
                                                  : kFailed;
    });
}

int vconf_set_bool(const char* key, int value) {
    return answer("vconf_set_bool", {named("key", key), number("value", value)}, kFailed,
                  [&](Television& television) {
                      return key != nullptr ? statusOf(television.settings().setBool(key, value)) : kFailed;
                  });
}

char* vconf_get_str(const char* key) {
    char* const none = nullptr;
    return answer("vconf_get_str", {named("key", key)}, none, [&](Television& television) -> char* {
        const auto value = key != nullptr ? television.settings().getString(key) : Result<std::string>("");
        return key != nullptr && value ? strdup(value->c_str()) : nullptr;
    });
}

int vconf_set_str(const char* key, const char* value) {
    return answer("vconf_set_str", {named("key", key), secret("value", value)}, kFailed,
                  [&](Television& television) {
                      return key != nullptr && value != nullptr
                                 ? statusOf(television.settings().set(key, std::string(value)))
                                 : kFailed;
                  });
}
