#include "platform/source_api.h"

#include "virtual_tv/platform/passage.h"

using namespace vxtv;

CSourceAPI* CSourceAPI::Get() {
    // Promised to be there in any case; its operations say that the service is not.
    static CSourceAPI sources;
    return answer("CSourceAPI::Get", {}, &sources, [](Television&) { return &sources; });
}

bool CSourceAPI::GetSourceList(std::shared_ptr<std::multimap<int, CSourceItem>>* /*list*/) {
    return absent("CSourceAPI::GetSourceList", {}, false);
}

bool CSourceAPI::SetCustomIconPath(int id, const std::string& iconPath,
                                   std::pair<std::string, std::string> appIconPaths, int iconType) {
    return absent("CSourceAPI::SetCustomIconPath",
                  {number("id", id), named("icon", iconPath), named("appIcon1", appIconPaths.first),
                   named("appIcon2", appIconPaths.second), number("iconType", iconType)},
                  false);
}
