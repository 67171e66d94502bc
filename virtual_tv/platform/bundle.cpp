#include "platform/bundle.h"

#include "virtual_tv/platform/passage.h"

using namespace vxtv;

namespace {

constexpr int kFailed = -1;

}  // namespace

bundle* bundle_create() {
    bundle* const none = nullptr;
    return absent("bundle_create", {}, none);
}

int bundle_add_str(bundle* /*b*/, const char* key, const char* value) {
    return absent("bundle_add_str", {named("key", key), secret("value", value)}, kFailed);
}

int bundle_add(bundle* /*b*/, const char* key, const char* value) {
    return absent("bundle_add", {named("key", key), secret("value", value)}, kFailed);
}

int bundle_get_str(bundle* /*b*/, const char* key, char** /*value*/) {
    return absent("bundle_get_str", {named("key", key)}, kFailed);
}

int bundle_free(bundle* /*b*/) {
    return absent("bundle_free", {}, kFailed);
}
