#include "cloning_app/run/dry_run.h"

#include <algorithm>

#include "cloning_app/package/disk_space.h"
#include "cloning_app/run/compared_state.h"
#include "cloning_app/run/own_settings.h"

namespace vxclone {

namespace {

/// What of the package would be loaded and can be compared without a run, its settings apart from those that
/// would be kept.
Result<ComparedState> stateToLoad(const ReadyPackage& ready, bool keepIdentity) {
    auto contents = readContents(ready.package.tree());
    if (!contents) {
        return tl::make_unexpected(contents.error());
    }
    ComparedState state;
    if (ready.settings) {
        state.settings =
            keepIdentity ? withoutKept(*ready.settings, identityOfTelevision()) : *ready.settings;
    }
    for (PackageEntry& entry : contents->entries) {
        const auto category = categoryOfPath(entry.path);
        const bool chosen =
            std::any_of(ready.plan.list.begin(), ready.plan.list.end(),
                        [category](VXClone value) { return categoryOf(value).name == category; });
        if (!entry.folder && chosen && category != categoryOf(VXCLONE_VCONF_DATA).name) {
            state.entries.push_back(std::move(entry));
        }
    }
    return state;
}

std::string detailOf(const Category& category, const std::vector<std::string>& seen,
                     const std::vector<Difference>& differences) {
    if (std::find(seen.begin(), seen.end(), category.name) == seen.end()) {
        return {};
    }
    const auto count =
        std::count_if(differences.begin(), differences.end(),
                      [&category](const Difference& each) { return each.category == category.name; });
    const bool settings = category.value == VXCLONE_VCONF_DATA;
    return count == 0
               ? std::string("changes nothing")
               : "changes " + countText(static_cast<std::uint64_t>(count), settings ? "setting" : "file");
}

/// The files that a restore of the home menu leaves beside those of the package are no change.
void removeWhatStays(std::vector<Difference>& differences) {
    const auto name = categoryOf(VXCLONE_VXHOTEL_HOMEAPP_DATA).name;
    differences.erase(
        std::remove_if(differences.begin(), differences.end(),
                       [name](const Difference& each) { return each.category == name && !each.inSecond; }),
        differences.end());
}

}  // namespace

Result<Report> tellWhatWouldBeDone(const ReadyPackage& ready, bool keepIdentity) {
    auto package = stateToLoad(ready, keepIdentity);
    if (!package) {
        return tl::make_unexpected(package.error());
    }
    const auto live = stateOfTelevision(*package);
    if (!live) {
        return tl::make_unexpected(live.error());
    }
    std::vector<Difference> differences = differencesOf(*live, *package);
    removeWhatStays(differences);
    const std::vector<std::string> seen = categoriesSeen(*package);
    std::vector<Row> own = ready.plan.leftOut;
    for (const VXClone value : ready.plan.list) {
        if (const Category& category = categoryOf(value); isLoaded(category)) {
            own.push_back({value, Verdict::Planned, detailOf(category, seen, differences)});
        }
    }
    if (keepIdentity && ready.settings) {
        const auto row = std::find_if(own.begin(), own.end(),
                                      [](const Row& each) { return each.category == VXCLONE_VCONF_DATA; });
        row->detail += (row->detail.empty() ? "keeps " : "; keeps ") +
                       countText(identityOfTelevision().size(), "setting");
    }
    Report report{tableRows(Direction::Restore, ready.plan.list, {}, own),
                  kExitOk,
                  {"This was a dry run: nothing was changed."},
                  ready.examined.checks,
                  ready.examined.digest.value_or("")};
    report.differences = {"this television", "the package", std::move(differences)};
    return report;
}

}  // namespace vxclone
