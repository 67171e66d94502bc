#include "cloning_app/run/difference_text.h"

#include <utility>

#include "cloning_app/run/setting_kinds.h"
#include "cloning_app/run/setting_value.h"

namespace vxclone {

namespace {

using Json = nlohmann::ordered_json;

std::string valueOf(const std::optional<Setting>& setting) {
    return setting ? shownValue(*setting) : "(not there)";
}

std::string_view nameOf(const Difference& difference) {
    if (difference.inFirst && difference.inSecond) {
        return "differs";
    }
    return difference.inFirst ? "missing" : "added";
}

}  // namespace

std::string wordsOf(const Difference& difference, const std::string& first, const std::string& second) {
    if (difference.isSetting && kindOf(difference.what) == SettingKind::Secret) {
        return "differs";
    }
    if (difference.isSetting) {
        return valueOf(difference.firstSetting) + " -> " + valueOf(difference.secondSetting);
    }
    if (difference.inFirst && difference.inSecond) {
        return difference.application.empty() ? "other content"
                                              : "other bytes; only the application can compare";
    }
    return "only in " + (difference.inFirst ? first : second);
}

Json jsonOf(const Difference& difference) {
    Json members = {{"kind", difference.isSetting ? "setting" : "file"},
                    {"category", difference.category},
                    {difference.isSetting ? "setting" : "path", difference.what},
                    {"result", nameOf(difference)}};
    if (!difference.application.empty()) {
        members["application"] = difference.application;
    }
    for (const auto& [name, setting] :
         {std::pair("first", &difference.firstSetting), std::pair("second", &difference.secondSetting)}) {
        if (*setting) {
            members[name] = jsonValue(**setting);
        }
    }
    return members;
}

}  // namespace vxclone
