#include "cloning_app/report/comparison.h"

#include <algorithm>
#include <utility>

#include "cloning_app/package/layout.h"
#include "cloning_app/television/category.h"
#include "cloning_app/television/setting_kinds.h"
#include "cloning_app/television/settings_store.h"

namespace vxclone {

namespace {

void compareSettings(const ComparedState& first, const ComparedState& second,
                     std::vector<Difference>& differences) {
    const std::string category(categoryOf(VXCLONE_VCONF_DATA).name);
    auto mine = first.settings.begin();
    auto theirs = second.settings.begin();
    while (mine != first.settings.end() || theirs != second.settings.end()) {
        const bool onlyMine =
            theirs == second.settings.end() || (mine != first.settings.end() && mine->key < theirs->key);
        const bool onlyTheirs =
            mine == first.settings.end() || (theirs != second.settings.end() && theirs->key < mine->key);
        if (onlyMine) {
            differences.push_back({category, mine->key, true, *mine, {}, true, false});
        } else if (onlyTheirs) {
            differences.push_back({category, theirs->key, true, {}, *theirs, false, true});
        } else if (!sameValue(*mine, *theirs)) {
            differences.push_back({category, mine->key, true, *mine, *theirs});
        }
        mine += onlyTheirs ? 0 : 1;
        theirs += onlyMine ? 0 : 1;
    }
}

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

std::string_view categoryOfPath(std::string_view path) {
    if (path == kIdentityFile) {
        return "identity";
    }
    const auto category = categoryOfEntry(topOf(path));
    return category ? categoryOf(*category).name : "other";
}

std::vector<Difference> differencesOf(const ComparedState& first, const ComparedState& second) {
    using Kind = EntryDifference::Kind;
    std::vector<Difference> differences;
    compareSettings(first, second, differences);
    for (EntryDifference& found : differencesOf(first.entries, second.entries)) {
        differences.push_back({std::string(categoryOfPath(found.path)),
                               std::move(found.path),
                               false,
                               {},
                               {},
                               found.kind != Kind::Added,
                               found.kind != Kind::Missing});
    }
    std::stable_sort(
        differences.begin(), differences.end(),
        [](const Difference& one, const Difference& other) { return one.category < other.category; });
    return differences;
}

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
