#include "virtual_tv/commands/setting_lookup.h"

#include "virtual_tv/commands/command.h"

namespace vxtv {

Result<Setting> lookUpSetting(const Television& television, const std::string& key) {
    Result<Setting> found = television.settings().get(key);
    if (found || found.error().code != ErrorCode::UnknownKey) {
        return found;
    }
    std::vector<std::string> keys;
    for (const Setting& setting : television.settings().list().value_or(std::vector<Setting>())) {
        keys.push_back(setting.key);
    }
    return tl::make_unexpected(asking(found.error(), key, keys));
}

}  // namespace vxtv
