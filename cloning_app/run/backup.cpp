#include <fmt/format.h>

#include "cloning_app/package/clone_root.h"
#include "cloning_app/package/disk_space.h"
#include "cloning_app/run/package_completion.h"
#include "cloning_app/run/recorded_run.h"
#include "cloning_app/run/run_parts.h"
#include "common/terminal_table.h"

namespace vxclone {

namespace {

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

/// The library's part. Result: what it reported.
Result<ResultList> saveTelevision(const CloneContext& context) {
    if (const auto reset = resetRunKeys(Direction::Backup); !reset) {
        return tl::make_unexpected(reset.error());
    }
    auto results =
        runAndFollow(context, Direction::Backup, allCategories(), [&] { return context.engine.backUp(); });
    if (results && context.stop.raised()) {
        return tl::make_unexpected(stopError(context.stop.signal()));
    }
    return results;
}

Result<Report> backUpTo(const CloneContext& context, StickTarget& target, Means means,
                        RunRecorder& recorder) {
    auto replacement = Replacement::begin(target);
    if (!replacement) {
        return tl::make_unexpected(replacement.error());
    }
    const auto root = CloneRoot::open(context.cloneRoot);
    if (!root) {
        return tl::make_unexpected(root.error());
    }
    const auto results = saveTelevision(context);
    if (!results) {
        return tl::make_unexpected(results.error());
    }
    auto report = completePackage(context, root->tree(), *results, std::move(means));
    if (!report) {
        return report;
    }
    recorder.setDigest(report->digest);
    if (const auto entered = recorder.enter(RunPhase::Writing); !entered) {
        return tl::make_unexpected(entered.error());
    }
    context.view.notice("Writing the package to " + vxcommon::printable(target.path()) + ".");
    const auto carried = carryToStick(context, root->tree(), *replacement);
    if (!carried) {
        return tl::make_unexpected(carried.error());
    }
    sayTheEnd(*report, *carried, target.path());
    return report;
}

Result<Report> backUp(const CloneContext& context, const std::filesystem::path& folder,
                      const BackupOptions& options, RunRecorder& recorder) {
    auto target = openTarget(context, folder);
    if (!target) {
        return tl::make_unexpected(target.error());
    }
    if (const auto replaceable = target->checkReplaceable(); !replaceable) {
        return tl::make_unexpected(replaceable.error());
    }
    // Asked before anything is made, on the television or on the stick.
    auto means = readyToSeal(context.engine, options.name.value_or(target->name()));
    if (!means) {
        return tl::make_unexpected(means.error());
    }
    return backUpTo(context, *target, *std::move(means), recorder);
}

}  // namespace

Result<Report> runBackup(const CloneContext& context, const std::filesystem::path& folder,
                         const BackupOptions& options) {
    return recordedRun(context, RunKind::Backup, folder,
                       [&](RunRecorder& recorder) { return backUp(context, folder, options, recorder); });
}

}  // namespace vxclone
