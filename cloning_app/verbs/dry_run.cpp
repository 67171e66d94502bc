#include "cloning_app/verbs/dry_run.h"

#include <fmt/format.h>

#include <algorithm>

#include "cloning_app/base/disk_space.h"
#include "cloning_app/check/compared_state.h"
#include "cloning_app/check/package_parts.h"
#include "cloning_app/report/progress_view.h"
#include "cloning_app/run/television_comparison.h"
#include "cloning_app/television/settings_store.h"

namespace vxclone {

namespace {

/// The part of the package that would be loaded, without the settings that would be kept. Entries that belong
/// to no category are loaded only together with all categories.
Result<ComparedState> stateToLoad(const ReadyPackage& ready, bool keepIdentity) {
    auto files = filesOf(ready.package.tree());
    VX_RETURN_IF_FAILED(files);
    ComparedState state;
    if (ready.settings) {
        state.settings =
            keepIdentity ? withoutKept(*ready.settings, identityOfTelevision()) : *ready.settings;
    }
    for (PackageEntry& entry : *files) {
        const auto category = categoryCalled(partOf(entry.path).category);
        if (category ? ready.plan.holds(*category) : ready.plan.everything) {
            state.entries.push_back(std::move(entry));
        }
    }
    return state;
}

/// Whether a restore leaves this on the television, although the package does not hold it.
bool stays(const Difference& difference) {
    const auto category = categoryCalled(difference.category);
    return category && categoryOf(*category).surplus == Surplus::Stays && !difference.inSecond;
}

/// What a restore leaves there is no change.
void removeWhatStays(std::vector<Difference>& differences) {
    differences.erase(std::remove_if(differences.begin(), differences.end(), stays), differences.end());
}

std::string changesIn(const PackagePart& part, const std::vector<Difference>& differences) {
    const auto count = static_cast<std::uint64_t>(
        std::count_if(differences.begin(), differences.end(),
                      [&part](const Difference& each) { return belongsTo(each, part); }));
    if (count == 0) {
        return "changes nothing";
    }
    if (part.isOfApplication()) {
        return "other bytes in " + countText(count, "file") + ", which only the application can compare";
    }
    const bool settings = categoryCalled(part.category) == VXCLONE_VCONF_DATA;
    return "changes " + countText(count, settings ? "setting" : "file");
}

/// The compared parts of the category, each with its result.
std::vector<Row> rowsOf(const Category& category, const TelevisionComparison& comparison) {
    std::vector<Row> rows;
    const auto add = [&](const PackagePart& part, const std::string& detail) {
        if (part.category == category.name) {
            rows.push_back({category.value, Verdict::Planned, detail, part.subject});
        }
    };
    for (const PackagePart& part : comparison.compared) {
        add(part, changesIn(part, comparison.differences));
    }
    for (const NotCompared& each : comparison.notCompared) {
        add(each.part, each.asAsked ? std::string() : "not compared: " + each.why);
    }
    if (rows.empty()) {
        const bool empty = category.holding != Holding::Nothing;
        rows.push_back({category.value, Verdict::Planned, empty ? "the package holds none" : ""});
    }
    return rows;
}

/// The rows of all categories. A category that would be loaded has a row for each of its parts.
std::vector<Row> rowsOf(const Plan& plan, const TelevisionComparison& comparison) {
    std::vector<Row> rows;
    for (Row& row : tableRows(Direction::Restore, plan.list, {}, plan.leftOut)) {
        const Category& category = categoryOf(row.category);
        if (!plan.holds(row.category) || !isLoaded(category)) {
            rows.push_back(std::move(row));
            continue;
        }
        for (Row& part : rowsOf(category, comparison)) {
            rows.push_back(std::move(part));
        }
    }
    return rows;
}

void sayWhatIsKept(std::vector<Row>& rows) {
    const auto row = std::find_if(rows.begin(), rows.end(),
                                  [](const Row& each) { return each.category == VXCLONE_VCONF_DATA; });
    addDetail(*row, "keeps " + countText(identityOfTelevision().size(), "setting"));
}

Result<TelevisionComparison> compare(const CloneContext& context, const ReadyPackage& ready,
                                     const ComparedState& package, bool quick, const TreeSize& needed) {
    if (quick) {
        return compareWithTelevision(package, nullptr);
    }
    QuietView view(context.view, ShownPhase::Saving);
    const CloneContext inner{.engine = context.engine,
                             .view = view,
                             .stop = context.stop,
                             .cloneRoot = context.cloneRoot,
                             .disk = context.disk};
    return lookForComparison(inner, ready.package.tree(), needed).map([&package](const TelevisionLook& look) {
        return compareWithTelevision(package, &look);
    });
}

}  // namespace

Result<Report> tellWhatWouldBeDone(const CloneContext& context, const ReadyPackage& ready,
                                   const RestoreOptions& options, const TreeSize& needed) {
    const auto package = stateToLoad(ready, options.keepIdentity);
    VX_RETURN_IF_FAILED(package);
    auto comparison = compare(context, ready, *package, options.quick, needed);
    VX_RETURN_IF_FAILED(comparison);
    removeWhatStays(comparison->differences);
    comparison->notHeld.clear();
    Report report{.rows = rowsOf(ready.plan, *comparison),
                  .exitStatus = comparison->complete() ? kExitOk : exitStatusOf(ErrorCode::CategoryFailed),
                  .closing = sentencesOf(*comparison),
                  .checks = ready.examined.checks,
                  .digest = ready.examined.digest.value_or(""),
                  .lacks = ready.examined.lacks};
    for (std::string& sentence : lackSentences(report.lacks, "The package")) {
        report.closing.push_back(std::move(sentence));
    }
    report.closing.emplace_back("This was a dry run: nothing was changed.");
    if (options.keepIdentity && ready.settings) {
        sayWhatIsKept(report.rows);
    }
    report.notCompared = namesNotCompared(*comparison);
    report.differences = {"this television", "the package", std::move(comparison->differences)};
    return report;
}

}  // namespace vxclone
