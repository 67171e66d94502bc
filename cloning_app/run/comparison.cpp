#include "cloning_app/run/comparison.h"

#include <algorithm>
#include <utility>

#include "cloning_app/package/layout.h"
#include "cloning_app/run/category.h"
#include "cloning_app/run/setting_value.h"

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

}  // namespace

std::string_view categoryOfPath(std::string_view path) {
    if (path == kIdentityFile) {
        return "identity";
    }
    const auto category = categoryOfEntry(path.substr(0, path.find('/')));
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

}  // namespace vxclone
