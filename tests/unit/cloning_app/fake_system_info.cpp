#include "tests/unit/cloning_app/fake_system_info.h"

#include <cstring>
#include <string_view>

#include "platform/system_info.h"

FakeSystemInfo& FakeSystemInfo::instance() {
    static FakeSystemInfo info;
    return info;
}

extern "C" {

int system_info_get_value_string(system_info_key_e key, char** value) {
    const FakeSystemInfo& info = FakeSystemInfo::instance();
    const auto& text = key == SYSTEM_INFO_KEY_MODEL ? info.model : info.productTag;
    if (!text || (key != SYSTEM_INFO_KEY_MODEL && key != SYSTEM_INFO_KEY_PRODUCT_TAG)) {
        return -1;
    }
    *value = strdup(text->c_str());
    return 0;
}

int system_info_get_value_int(system_info_key_e key, int* value) {
    const auto& tuner = FakeSystemInfo::instance().tuner;
    *value = tuner.value_or(*value);
    return key == SYSTEM_INFO_KEY_TUNER_TYPE && tuner ? 0 : -1;
}

int system_info_get_custom_bool(const char* key, bool* value) {
    const bool known =
        std::string_view(key) == "com.kestrel/featureconf/vx_hotel_cloning.product_clone_info.tuner_support";
    const auto& regional = FakeSystemInfo::instance().regionalTuner;
    *value = regional.value_or(*value);
    return known && regional ? 0 : -1;
}
}
