#include <fmt/format.h>

#include "cloning_app/package/clone_root.h"
#include "cloning_app/package/disk_space.h"
#include "cloning_app/package/layout.h"
#include "cloning_app/package/settings_file.h"
#include "cloning_app/run/applications.h"
#include "cloning_app/run/logos.h"
#include "cloning_app/run/package_origin.h"
#include "cloning_app/run/run_parts.h"
#include "cloning_app/run/sealing.h"
#include "common/terminal_table.h"

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

/// Copies the finished backup beside the target and lets it take the target's place.
Result<TreeSize> carryToStick(const CloneContext& context, const Tree& root, Replacement& replacement) {
    const Tree stick = replacement.tree();
    const FileSystemRules& rules = rulesAt(stick.descriptor);
    const auto rule = [&rules](const TreeEntry& entry) {
        return problemWith(rules, entry.name, entry.bytes);
    };
    const auto needed = measureTree(root, TreeLimits{}, rule);
    if (!needed) {
        return needed;
    }
    if (const auto space = checkSpace(stick, *needed, 0); !space) {
        return tl::make_unexpected(space.error());
    }
    auto copied = copyTree(root, stick, TreeLimits{}, Flush::Yes, context.disk, context.stop);
    if (!copied) {
        return copied;
    }
    if (const auto committed = replacement.commit(); !committed) {
        return tl::make_unexpected(committed.error());
    }
    return copied;
}

/// What is needed to complete a backup to a package.
struct Means {
    PackageKey key;
    PackageOrigin origin;
};

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
    nameApplications(rows);
    return rows;
}

/// What a backup needs of the television, beside the library's own work.
Result<Means> readyToSeal(const CloneContext& context, const StickTarget& target,
                          const BackupOptions& options) {
    auto key = requireKeys(context.engine);
    if (!key) {
        return tl::make_unexpected(key.error());
    }
    auto origin = originOfBackup(options.name.value_or(target.name()));
    if (!origin) {
        return tl::make_unexpected(origin.error());
    }
    return Means{std::move(*key), std::move(*origin)};
}

/// Makes a package of the backup that the library left.
Result<Report> completePackage(const CloneContext& context, const Tree& root, const ResultList& results,
                               Means& means) {
    const auto rows = judgeBackup(context, root, results);
    if (!rows) {
        return tl::make_unexpected(rows.error());
    }
    means.origin.results = resultsOf(*rows);
    const auto sealed = sealPackage(context.engine, root, means.origin, means.key);
    if (!sealed) {
        return tl::make_unexpected(sealed.error());
    }
    Report report{Direction::Backup, *rows, exitStatusFor(*rows, results), unknownLineSentences(results),
                  sealed->checks};
    report.digest = sealed->digest;
    return report;
}

void sayTheEnd(Report& report, const TreeSize& size, const std::string& path) {
    report.closing.push_back(fmt::format("Backup in {}: {}, {}.", vxcommon::printable(path),
                                         countText(size.files, "file"), sizeText(size.bytes)));
    report.closing.push_back(fmt::format("Digest {}", report.digest));
    if (report.exitStatus == kExitOk) {
        report.closing.emplace_back("Safe to remove the stick.");
    } else {
        report.closing.push_back(fmt::format(
            "The backup is incomplete (failed: {}); the rest is on the stick, which may be removed.",
            failedNames(report.rows)));
    }
}

}  // namespace

Result<Report> runBackup(const CloneContext& context, const std::filesystem::path& folder,
                         const BackupOptions& options) {
    auto target = openTarget(context, folder);
    if (!target) {
        return tl::make_unexpected(target.error());
    }
    if (const auto replaceable = target->checkReplaceable(); !replaceable) {
        return tl::make_unexpected(replaceable.error());
    }
    // Asked before anything is made, on the television or on the stick.
    auto means = readyToSeal(context, *target, options);
    if (!means) {
        return tl::make_unexpected(means.error());
    }
    if (const auto reset = resetRunKeys(Direction::Backup); !reset) {
        return tl::make_unexpected(reset.error());
    }
    auto replacement = Replacement::begin(*target);
    if (!replacement) {
        return tl::make_unexpected(replacement.error());
    }
    const auto root = CloneRoot::open(context.cloneRoot);
    if (!root) {
        return tl::make_unexpected(root.error());
    }
    const auto results =
        runAndFollow(context, Direction::Backup, allCategories(), [&] { return context.engine.backUp(); });
    if (!results) {
        return tl::make_unexpected(results.error());
    }
    if (context.stop.raised()) {
        return tl::make_unexpected(stopError(context.stop.signal()));
    }
    auto report = completePackage(context, root->tree(), *results, *means);
    if (!report) {
        return report;
    }
    context.view.notice("Writing the package to " + vxcommon::printable(target->path()) + ".");
    const auto carried = carryToStick(context, root->tree(), *replacement);
    if (!carried) {
        return tl::make_unexpected(carried.error());
    }
    sayTheEnd(*report, *carried, target->path());
    return report;
}

}  // namespace vxclone
