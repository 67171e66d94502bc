#include "cloning_app/run/comparison.h"

#include <algorithm>
#include <array>
#include <utility>

#include "cloning_app/package/layout.h"
#include "cloning_app/run/category.h"
#include "cloning_app/run/setting_value.h"

namespace vxclone {

namespace {

struct Spot {
    std::string_view entry;  ///< at the top of a package
    VXClone category;
};

/// What services put into a package beside these has no name that is known; applications have a folder with
/// their id each.
constexpr std::array kSpots = {
    Spot{"factory.backup", VXCLONE_FACTORY_SETTINGS},
    Spot{"picture-and-sound.backup", VXCLONE_AV_SETTINGS},
    Spot{"web-applications.backup", VXCLONE_WAS_API_DATA},
    Spot{"settings-data.backup", VXCLONE_SETTINGS_DATA},
    Spot{kSettingsFolder, VXCLONE_VCONF_DATA},
    Spot{"org.vorta.homedatacontrol-service", VXCLONE_HOME_INTERNAL_API_DATA},
    Spot{"tvs-chms", VXCLONE_BROADCAST_TVS},
    Spot{"tvtimer", VXCLONE_VXTV_TIMER_DATA},
    Spot{"logo", VXCLONE_HOSPITALITY_LOGO},
    Spot{"VXHotel", VXCLONE_VXHOTEL_HOMEAPP_DATA},
    Spot{"VXMBRLogo", VXCLONE_VXHOTEL_MBR_LOGO},
};

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
    const std::string_view top = path.substr(0, path.find('/'));
    const auto* const spot =
        std::find_if(kSpots.begin(), kSpots.end(), [top](const Spot& known) { return known.entry == top; });
    return spot == kSpots.end() ? "other" : categoryOf(spot->category).name;
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
