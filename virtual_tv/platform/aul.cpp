#include "platform/aul.h"

#include "virtual_tv/platform/passage.h"

using namespace vxtv;

namespace {

constexpr int kNotRunning = 0;
constexpr int kNotLaunched = -1;

}  // namespace

int aul_app_is_running(const char* app_id) {
    return absent("aul_app_is_running", {named("appId", app_id)}, kNotRunning);
}

int aul_launch_app(const char* app_id, bundle* /*args*/) {
    return absent("aul_launch_app", {named("appId", app_id)}, kNotLaunched);
}
