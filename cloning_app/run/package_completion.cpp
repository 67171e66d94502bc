#include "cloning_app/run/package_completion.h"

#include <fmt/format.h>

#include "cloning_app/package/disk_space.h"
#include "cloning_app/package/layout.h"
#include "cloning_app/package/settings_file.h"
#include "cloning_app/run/applications.h"
#include "cloning_app/run/logos.h"
#include "cloning_app/run/package_origin.h"
#include "cloning_app/run/run_parts.h"
#include "cloning_app/run/sealing.h"

namespace vxclone {

namespace {

/// The library says nothing of the settings file, and writes an empty one on a full disk.
Result<Row> judgeSettings(const Tree& root) {
    const auto settings = readSettings(root);
    if (settings && *settings) {
        return Row{VXCLONE_VCONF_DATA, Verdict::Done, "saved, " + countText((*settings)->size(), "setting")};
    }
    return failure(
        ErrorCode::SettingsNotSaved,
        fmt::format("the backup left no good {}: the television's disk may be full; free some space on "
                    "it and back up again",
                    kSettingsFile));
}

/// The library calls a backup of the channels a success whatever the television answered: what a restore
/// needs has to be there.
void judgeEntries(const Tree& root, std::vector<Row>& rows) {
    for (Row& row : rows) {
        const Category& category = categoryOf(row.category);
        const std::string entry(category.inBackup == Handling::Reported ? category.entry : "");
        if (row.verdict == Verdict::Done && !entry.empty() && !hasEntry(root, entry).value_or(true)) {
            row.verdict = Verdict::Failed;
            row.detail = "the television saved no " + entry;
        }
    }
}

/// An application that left data in the package ran, whether the library reported it or not.
void judgeApplications(const Tree& root, std::vector<Row>& rows) {
    const auto hasSaved = [&root](const Row& row) {
        return !row.subject.empty() && hasEntry(root, row.subject).value_or(false);
    };
    if (!lostAnOutcome(rows, hasSaved)) {
        return;
    }
    for (Row& row : rows) {
        if (row.category == VXCLONE_VXHOTEL_FIRSTSCREEN_DATA) {
            doubt(row);
        }
    }
}

/// Looks at what the library left, before anything is made of it. Result: the rows of all categories.
Result<std::vector<Row>> judgeBackup(const CloneContext& context, const Tree& root,
                                     const ResultList& results) {
    const auto settings = judgeSettings(root);
    if (!settings) {
        return tl::make_unexpected(settings.error());
    }
    std::vector<Row> own = saveLogos(root, context.stop);
    own.push_back(*settings);
    for (const Row& row : own) {
        context.view.category(row);
    }
    std::vector<Row> rows = tableRows(Direction::Backup, allCategories(), results.outcomes(), own);
    judgeEntries(root, rows);
    nameApplications(rows);
    judgeApplications(root, rows);
    return rows;
}

}  // namespace

Result<Means> readyToSeal(CloneEngine& engine, const std::string& name) {
    auto key = requireKeys(engine);
    if (!key) {
        return tl::make_unexpected(key.error());
    }
    auto origin = originOfBackup(name);
    if (!origin) {
        return tl::make_unexpected(origin.error());
    }
    return Means{std::move(*key), std::move(*origin)};
}

Result<Report> completePackage(const CloneContext& context, const Tree& root, const ResultList& results,
                               Means means) {
    const auto rows = judgeBackup(context, root, results);
    if (!rows) {
        return tl::make_unexpected(rows.error());
    }
    means.origin.results = resultsOf(*rows);
    const auto sealed = sealPackage(context.engine, root, means.origin, means.key);
    if (!sealed) {
        return tl::make_unexpected(sealed.error());
    }
    Report report{*rows, exitStatusFor(*rows, results), unknownLineSentences(results), sealed->checks};
    report.digest = sealed->digest;
    return report;
}

}  // namespace vxclone
