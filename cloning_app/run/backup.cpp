#include <fmt/format.h>

#include "cloning_app/package/clone_root.h"
#include "cloning_app/package/disk_space.h"
#include "cloning_app/package/layout.h"
#include "cloning_app/package/settings_file.h"
#include "cloning_app/run/applications.h"
#include "cloning_app/run/integrity.h"
#include "cloning_app/run/logos.h"
#include "cloning_app/run/run_parts.h"
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

/// The finished backup in the clone folder.
struct Saved {
    std::vector<Row> own;  ///< what the library does not report
    std::vector<Check> checks;
};

/// Looks at what the library saved, and completes it to a package.
Result<Saved> completePackage(const CloneContext& context, const Tree& root, const Identity& identity) {
    const auto settings = judgeSettings(root);
    if (!settings) {
        return tl::make_unexpected(settings.error());
    }
    std::vector<Row> own = saveLogos(root, context.stop);
    own.push_back(*settings);
    for (const Row& row : own) {
        context.view.category(row);
    }
    const auto checks = sealPackage(context.engine, root, identity);
    if (!checks) {
        return tl::make_unexpected(checks.error());
    }
    return Saved{std::move(own), *checks};
}

/// What a backup needs of the television, beside the library's own work.
Result<Identity> readyToSeal(const CloneContext& context) {
    if (const auto key = requireKey(context.engine); !key) {
        return tl::make_unexpected(key.error());
    }
    const Identity identity = televisionIdentity();
    if (const auto text = identityText(identity); !text) {
        return tl::make_unexpected(text.error());
    }
    return identity;
}

Report makeReport(const ResultList& results, const Saved& saved, const TreeSize& size,
                  const std::string& path) {
    Report report{Direction::Backup,
                  tableRows(Direction::Backup, allCategories(), results.outcomes(), saved.own), 0,
                  unknownLineSentences(results), saved.checks};
    nameApplications(report.rows);
    report.exitStatus = exitStatusFor(report.rows, results);
    report.closing.push_back(fmt::format("Backup in {}: {}, {}.", vxcommon::printable(path),
                                         countText(size.files, "file"), sizeText(size.bytes)));
    if (report.exitStatus == kExitOk) {
        report.closing.emplace_back("Safe to remove the stick.");
    } else {
        report.closing.push_back(fmt::format(
            "The backup is incomplete (failed: {}); the rest is on the stick, which may be removed.",
            failedNames(report.rows)));
    }
    return report;
}

}  // namespace

Result<Report> runBackup(const CloneContext& context, const std::filesystem::path& folder) {
    auto target = openTarget(context, folder);
    if (!target) {
        return tl::make_unexpected(target.error());
    }
    if (const auto replaceable = target->checkReplaceable(); !replaceable) {
        return tl::make_unexpected(replaceable.error());
    }
    // Asked before anything is made, on the television or on the stick.
    const auto identity = readyToSeal(context);
    if (!identity) {
        return tl::make_unexpected(identity.error());
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
    const auto results = runAndFollow(context, Direction::Backup, [&] { return context.engine.backUp(); });
    if (!results) {
        return tl::make_unexpected(results.error());
    }
    if (context.stop.raised()) {
        return tl::make_unexpected(stopError(context.stop.signal()));
    }
    const auto saved = completePackage(context, root->tree(), *identity);
    if (!saved) {
        return tl::make_unexpected(saved.error());
    }
    context.view.notice("Writing the package to " + vxcommon::printable(target->path()) + ".");
    const auto carried = carryToStick(context, root->tree(), *replacement);
    if (!carried) {
        return tl::make_unexpected(carried.error());
    }
    return makeReport(*results, *saved, *carried, target->path());
}

}  // namespace vxclone
