#include <fcntl.h>
#include <fmt/format.h>
#include <unistd.h>

#include <algorithm>

#include "cloning_app/package/disk_space.h"
#include "cloning_app/package/layout.h"
#include "cloning_app/run/applications.h"
#include "cloning_app/run/identity_check.h"
#include "cloning_app/run/integrity.h"
#include "cloning_app/run/logos.h"
#include "cloning_app/run/run_parts.h"
#include "cloning_app/run/settings_store.h"
#include "cloning_app/run/staged_package.h"
#include "common/terminal_table.h"

namespace vxclone {

namespace {

constexpr std::size_t kMostKeysNamed = 3;

using Settings = std::optional<std::vector<Setting>>;

bool contains(const std::vector<VXClone>& list, VXClone value) {
    return std::find(list.begin(), list.end(), value) != list.end();
}

std::string overrideWarning(const Check& model) {
    return fmt::format(
        "WARNING: the package is from another model: this television is a {}, the package is from a {}. "
        "It is restored all the same, because of --force-model; what the models do not share may not work.",
        vxcommon::printable(model.television), vxcommon::printable(model.package));
}

/// Lets only the package in that the user has inspected. `expected` is the beginning of its digest, or empty.
Result<void> expectDigest(const Examination& found, const std::string& expected, const std::string& path) {
    if (expected.empty() || (found.digest && found.digest->substr(0, expected.size()) == expected)) {
        return {};
    }
    const std::string whatItIs =
        found.digest ? "has the digest " + *found.digest : std::string("has no manifest, and so no digest");
    return failure(ErrorCode::Altered,
                   fmt::format("{} is not the expected package: it {}, not {}; take the package that was "
                               "inspected",
                               vxcommon::printable(path), whatItIs, expected));
}

/// What of a good examination is shown with the result of a restore.
std::vector<Check> shownOf(const std::vector<Check>& checks, bool overridden) {
    std::vector<Check> shown;
    if (!overridden) {
        shown.push_back({Subject::Identity, Finding::Verified});
    }
    for (const Check& check : checks) {
        const bool ofIdentity = check.subject == Subject::Model || check.subject == Subject::ProductTag ||
                                check.subject == Subject::Tuner;
        if (check.subject == Subject::Seal || check.finding == Finding::Unaltered) {
            shown.push_back({check.subject, Finding::Verified});
        } else if (overridden || !ofIdentity) {
            shown.push_back(check);
        }
    }
    return shown;
}

/// Refuses a staged package that does not fit or was altered. Result: what was examined, for the table.
Result<Examination> admit(const CloneContext& context, const StagedPackage& package,
                          const RestoreOptions& options) {
    auto found = examinePackage(context.engine, package.tree());
    if (!found) {
        return found;
    }
    const bool overridden = options.forceModel && overrideModel(found->checks);
    if (const auto problem = problemOf(found->checks)) {
        return failure(
            *problem,
            fmt::format("{}", fmt::join(problemSentences(found->checks, package.origin()), "; also: ")));
    }
    if (const auto right = expectDigest(*found, options.expect, package.origin()); !right) {
        return tl::make_unexpected(right.error());
    }
    if (overridden) {
        context.view.notice(overrideWarning(found->checks.front()));
    }
    return Examination{shownOf(found->checks, overridden), found->digest};
}

/// What the library is told to load, and what is left out of that and why.
struct Plan {
    std::vector<VXClone> list;
    std::vector<Row> leftOut;
};

/// A package without a boot logo makes the library remove the television's own: that is done only for who
/// asks for it by name.
Plan planFor(const RestoreOptions& options, const Tree& package) {
    Plan plan{options.list, {}};
    if (options.everything && !holdsEntry(package, VXCLONE_HOSPITALITY_LOGO)) {
        plan.list.erase(std::remove(plan.list.begin(), plan.list.end(), VXCLONE_HOSPITALITY_LOGO),
                        plan.list.end());
        plan.leftOut.push_back({VXCLONE_HOSPITALITY_LOGO, Verdict::NotChosen,
                                "the package holds none; this television keeps its own"});
    }
    return plan;
}

Row judgeSettings(const Settings& settings) {
    if (!settings) {
        return {VXCLONE_VCONF_DATA, Verdict::Failed, fmt::format("the package holds no {}", kSettingsFile)};
    }
    const std::vector<std::string> missed = settingsNotApplied(*settings);
    const std::size_t all = settings->size();
    if (missed.empty()) {
        return {VXCLONE_VCONF_DATA, Verdict::Done, "applied, " + countText(all, "setting")};
    }
    std::string detail = fmt::format("{} of {} applied; not", all - missed.size(), all);
    for (std::size_t index = 0; index < std::min(missed.size(), kMostKeysNamed); ++index) {
        detail += " " + missed[index];
    }
    if (missed.size() > kMostKeysNamed) {
        detail += fmt::format(" and {} more", missed.size() - kMostKeysNamed);
    }
    return {VXCLONE_VCONF_DATA, Verdict::Failed, detail};
}

/// Says of a failed category when the package did not hold what it needs.
void explainMissingEntries(std::vector<Row>& rows, const Tree& root) {
    for (Row& row : rows) {
        if (row.verdict == Verdict::Failed && !holdsEntry(root, row.category)) {
            row.detail = "the package holds no " + std::string(categoryOf(row.category).entry);
        }
    }
}

std::string closingSentence(const Report& report, const std::string& path) {
    const std::string from = vxcommon::printable(path);
    return report.exitStatus == kExitOk ? fmt::format("Restored from {}.", from)
                                        : fmt::format("Restored from {}, but not all of it (failed: {}).",
                                                      from, failedNames(report.rows));
}

}  // namespace

Result<Report> runRestore(const CloneContext& context, const std::filesystem::path& folder,
                          const RestoreOptions& options) {
    auto package = StagedPackage::bring(context, folder);
    if (!package) {
        return tl::make_unexpected(package.error());
    }
    const auto examined = admit(context, *package, options);
    if (!examined) {
        return tl::make_unexpected(examined.error());
    }
    const Plan plan = planFor(options, package->tree());
    const bool withSettings = contains(plan.list, VXCLONE_VCONF_DATA);
    const auto settings = withSettings ? readSettings(package->tree()) : Settings();
    if (!settings) {
        return tl::make_unexpected(settings.error());
    }
    if (context.stop.raised()) {
        return tl::make_unexpected(stopError(context.stop.signal()));
    }
    if (const auto reset = resetRunKeys(Direction::Restore); !reset) {
        return tl::make_unexpected(reset.error());
    }
    package->keep();
    const auto results = runAndFollow(context, Direction::Restore, plan.list,
                                      [&] { return context.engine.restore(plan.list); });
    if (!results) {
        return tl::make_unexpected(results.error());
    }
    std::vector<Row> own = plan.leftOut;
    if (withSettings) {
        own.push_back(judgeSettings(*settings));
        context.view.category(own.back());
    }
    Report report{Direction::Restore,
                  tableRows(Direction::Restore, plan.list, results->outcomes(), own),
                  0,
                  unknownLineSentences(*results),
                  examined->checks,
                  examined->digest.value_or("")};
    nameApplications(report.rows);
    explainMissingEntries(report.rows, package->tree());
    report.exitStatus = exitStatusFor(report.rows, *results);
    report.closing.push_back(closingSentence(report, package->origin()));
    if (context.stop.raised()) {
        report.exitStatus = exitStatusOf(stopError(context.stop.signal()).code);
        report.closing.emplace_back("Stopped as you asked, after the end of the run.");
    }
    return report;
}

}  // namespace vxclone
