#include <fcntl.h>
#include <fmt/format.h>
#include <unistd.h>

#include <algorithm>

#include "cloning_app/package/clone_root.h"
#include "cloning_app/package/disk_space.h"
#include "cloning_app/package/layout.h"
#include "cloning_app/run/run_parts.h"
#include "cloning_app/run/settings_store.h"
#include "common/terminal_table.h"

namespace vxclone {

namespace {

constexpr std::size_t kMostKeysNamed = 3;

using Settings = std::optional<std::vector<Setting>>;

bool contains(const std::vector<VXClone>& list, VXClone value) {
    return std::find(list.begin(), list.end(), value) != list.end();
}

/// Checks the package on the stick and copies it to the television. Nothing is copied unless all of it is
/// good. Result: the settings that it holds, where these were asked for.
Result<Settings> bringPackage(const CloneContext& context, const StickTarget& target, CloneRoot& root,
                              const std::vector<VXClone>& list) {
    const auto folder = target.openPackage();
    if (!folder) {
        return tl::make_unexpected(folder.error());
    }
    const Tree package{folder->get(), target.path(), Place::Stick};
    const bool wanted = contains(list, VXCLONE_VCONF_DATA);
    if (const auto size = measureTree(package, TreeLimits{}); !size) {
        return tl::make_unexpected(size.error());
    }
    if (const auto settings = wanted ? readSettings(package) : Settings(); !settings) {
        return settings;
    }
    if (const auto copied = root.fillFrom(package, TreeLimits{}, context.stop); !copied) {
        return tl::make_unexpected(copied.error());
    }
    return wanted ? readSettings(root.tree()) : Settings();
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
        const std::string entry(categoryOf(row.category).entry);
        if (row.verdict == Verdict::Failed && !entry.empty() &&
            faccessat(root.descriptor, entry.c_str(), F_OK, AT_SYMLINK_NOFOLLOW) != 0) {
            row.detail = "the package holds no " + entry;
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
                          const std::vector<VXClone>& list) {
    const auto target = openTarget(context, folder);
    if (!target) {
        return tl::make_unexpected(target.error());
    }
    if (const auto package = target->openPackage(); !package) {
        return tl::make_unexpected(package.error());
    }
    auto root = CloneRoot::open(context.cloneRoot);
    if (!root) {
        return tl::make_unexpected(root.error());
    }
    if (const auto reset = resetRunKeys(Direction::Restore); !reset) {
        return tl::make_unexpected(reset.error());
    }
    const auto settings = bringPackage(context, *target, *root, list);
    if (!settings) {
        return tl::make_unexpected(settings.error());
    }
    const auto results =
        runAndFollow(context, Direction::Restore, [&] { return context.engine.restore(list); });
    if (!results) {
        return tl::make_unexpected(results.error());
    }
    Row settingsRow{VXCLONE_VCONF_DATA, Verdict::NotChosen, ""};
    if (contains(list, VXCLONE_VCONF_DATA)) {
        settingsRow = judgeSettings(*settings);
        context.view.category(settingsRow);
    }
    Report report{Direction::Restore, tableRows(Direction::Restore, list, results->outcomes(), settingsRow),
                  0, unknownLineSentences(*results)};
    explainMissingEntries(report.rows, root->tree());
    report.exitStatus = exitStatusFor(report.rows, *results);
    report.closing.push_back(closingSentence(report, target->path()));
    if (context.stop.raised()) {
        report.exitStatus = exitStatusOf(stopError(context.stop.signal()).code);
        report.closing.emplace_back("Stopped as you asked, after the end of the run.");
    }
    return report;
}

}  // namespace vxclone
