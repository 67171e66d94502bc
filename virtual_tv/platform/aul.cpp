#include "platform/aul.h"

#include <array>
#include <nlohmann/json.hpp>
#include <string>

#include "virtual_tv/applications/application_launch.h"
#include "virtual_tv/applications/application_manifest.h"
#include "virtual_tv/applications/application_run.h"
#include "virtual_tv/platform/bundle_content.h"
#include "virtual_tv/platform/passage.h"
#include "virtual_tv/platform/statuses.h"

using namespace vxtv;

namespace {

constexpr int kRunning = 1;
constexpr int kNotRunning = 0;

constexpr std::array kLaunchStatuses = {
    StatusOf{ErrorCode::BadArgument, -2},
    StatusOf{ErrorCode::UnknownApplication, -3},
    StatusOf{ErrorCode::BadApplication, -4},
    StatusOf{ErrorCode::CannotRun, -5},
};

/// The bundle in the form in which the application finds it in its environment. Throws for a value that is
/// not UTF-8.
std::string textOf(const bundle* launch) {
    if (launch == nullptr || launch->entries.empty()) {
        return {};
    }
    auto object = nlohmann::ordered_json::object();
    for (const auto& [key, value] : launch->entries) {
        object[key] = value;
    }
    return object.dump();
}

int launch(const Television& television, const std::string& id, const bundle* launchBundle) {
    const auto process = launchApplication(television.folder(), id, textOf(launchBundle));
    return process ? *process : statusOf(kLaunchStatuses, process.error().code, kFailed);
}

}  // namespace

int aul_app_is_running(const char* app_id) {
    return answer("aul_app_is_running", {named("appId", app_id)}, kFailed, [&](Television& television) {
        if (app_id == nullptr || !isApplicationId(app_id)) {
            return statusOf(kLaunchStatuses, ErrorCode::BadArgument, kFailed);
        }
        return runningProcess(television.folder(), app_id) ? kRunning : kNotRunning;
    });
}

int aul_launch_app(const char* app_id, bundle* args) {
    return answer("aul_launch_app", {named("appId", app_id)}, kFailed, [&](Television& television) {
        return app_id != nullptr ? launch(television, app_id, args)
                                 : statusOf(kLaunchStatuses, ErrorCode::BadArgument, kFailed);
    });
}
