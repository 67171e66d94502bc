#include "platform/source_api.h"
#include "tests/support/scripted/answering.h"

using namespace vxtest;

CSourceAPI* CSourceAPI::Get() {
    static CSourceAPI sources;
    platform().decide("CSourceAPI::Get", "");
    return &sources;
}

bool CSourceAPI::GetSourceList(std::shared_ptr<std::multimap<int, CSourceItem>>* list) {
    return answered("CSourceAPI::GetSourceList", "", [&] {
        *list = std::make_shared<std::multimap<int, CSourceItem>>(
            platform().locked([](ScriptedPlatform::State& state) { return state.sources; }));
        return true;
    });
}

bool CSourceAPI::SetCustomIconPath(int id, const std::string& iconPath,
                                   std::pair<std::string, std::string> appIconPaths, int iconType) {
    const std::string arguments =
        fmt::format("{}, {}, {}, {}, {}", id, quoted(iconPath), quoted(appIconPaths.first),
                    quoted(appIconPaths.second), iconType);
    return answered("CSourceAPI::SetCustomIconPath", arguments, [] { return true; });
}
