#include "platform/source_api.h"

#include "virtual_tv/platform/passage.h"
#include "virtual_tv/services/source_list.h"

using namespace vxtv;

namespace {

using Items = std::multimap<int, CSourceItem>;

std::shared_ptr<Items> itemsOf(const std::vector<Source>& sources) {
    auto items = std::make_shared<Items>();
    for (const Source& source : sources) {
        items->emplace(source.key, CSourceItem{source.name, source.id, source.iconType});
    }
    return items;
}

}  // namespace

CSourceAPI* CSourceAPI::Get() {
    // The contract says that the object always exists. Its operations report if the service does not.
    static CSourceAPI sources;
    return answer("CSourceAPI::Get", {}, &sources, [](Television&) { return &sources; });
}

bool CSourceAPI::GetSourceList(std::shared_ptr<std::multimap<int, CSourceItem>>* list) {
    return answer("CSourceAPI::GetSourceList", {}, false, [list](Television& television) {
        const auto sources = SourceList(television.database()).list();
        if (list == nullptr || !sources) {
            return false;
        }
        *list = itemsOf(*sources);
        return true;
    });
}

bool CSourceAPI::SetCustomIconPath(int id, const std::string& iconPath,
                                   std::pair<std::string, std::string> appIconPaths, int iconType) {
    return answer("CSourceAPI::SetCustomIconPath",
                  {number("id", id), named("icon", iconPath), named("appIcon1", appIconPaths.first),
                   named("appIcon2", appIconPaths.second), number("iconType", iconType)},
                  false, [&](Television& television) {
                      const SourceIcons icons = {iconPath, appIconPaths.first, appIconPaths.second, iconType};
                      return SourceList(television.database()).setIcons(id, icons).has_value();
                  });
}
