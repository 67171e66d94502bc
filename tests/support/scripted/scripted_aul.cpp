#include "platform/aul.h"
#include "tests/support/scripted/answering.h"
#include "tests/support/scripted/scripted_bundle_content.h"

using namespace vxtest;

namespace {

constexpr int kLaunchedProcess = 4711;

bool isName(const char* text) {
    return text != nullptr && *text != '\0';
}

}  // namespace

int aul_app_is_running(const char* app_id) {
    return answered("aul_app_is_running", quoted(app_id), [&] {
        return platform().locked([&](ScriptedPlatform::State& state) {
            return !isName(app_id) ? -1 : static_cast<int>(state.running.count(app_id));
        });
    });
}

int aul_launch_app(const char* app_id, bundle* args) {
    return answered("aul_launch_app", fmt::format("{}, {}", quoted(app_id), written(args)), [&] {
        return platform().locked([&](ScriptedPlatform::State& state) {
            if (!isName(app_id)) {
                return -1;
            }
            state.running.insert(app_id);
            return kLaunchedProcess;
        });
    });
}
