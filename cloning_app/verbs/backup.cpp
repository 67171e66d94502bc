#include "cloning_app/verbs/backup.h"

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "cloning_app/base/disk_space.h"
#include "cloning_app/package/manifest_file.h"
#include "cloning_app/package/package_contents.h"
#include "cloning_app/run/library_run.h"
#include "cloning_app/run/package_completion.h"
#include "cloning_app/run/recorded_run.h"
#include "cloning_app/run/staged_package.h"
#include "cloning_app/storage/clone_root.h"
#include "cloning_app/television/television_folders.h"
#include "common/terminal_table.h"

namespace vxclone {

namespace {

/// Checks that the package on the stick matches its manifest. An application that answered too late may have
/// written into the clone folder after the library's run had ended. Result: its size.
Result<TreeSize> checkCopy(const CloneContext& context, const Tree& stick) {
    const auto listed = readManifest(stick, PackageKey::ofTelevision(), &context.stop);
    VX_RETURN_IF_FAILED(listed);
    const auto held =
        ContentsReading::begin(stick, Digests::OfFiles, &context.stop).and_then([](ContentsReading reading) {
            return reading.finish();
        });
    VX_RETURN_IF_FAILED(held);
    const auto differences =
        differencesOf(*listed ? (*listed)->manifest.entries : std::vector<PackageEntry>(), held->entries);
    if (differences.empty()) {
        return sizeOf(*held);
    }
    return failure(ErrorCode::NotSealed,
                   fmt::format("the backup is not whole: {} changed while it was saved, perhaps by an "
                               "application that was still at work; back up again",
                               vxcommon::printable(differences.front().path)));
}

/// Copies the finished backup to the stick and replaces the target by it.
Result<TreeSize> carryToStick(const CloneContext& context, const Tree& root, Replacement& replacement) {
    const Tree stick = replacement.tree();
    TreeJudge judge(rulesAt(stick.descriptor));
    const auto rule = [&judge](const TreeEntry& entry) { return judge.problemWith(entry); };
    const auto needed = measureTree(root, TreeLimits{}, rule);
    if (!needed) {
        return needed;
    }
    VX_RETURN_IF_FAILED(checkSpace(stick, *needed));
    const DiskCalls calls = countingWrites(context.disk, needed->bytes, [&context](double part) {
        context.view.progress({ShownPhase::Writing, part});
    });
    const auto copied = copyTree(root, stick, TreeLimits{}, Flush::Yes, calls, context.stop);
    if (!copied) {
        return copied;
    }
    context.view.progress({ShownPhase::Closing});
    auto size = checkCopy(context, stick);
    if (!size) {
        return size;
    }
    VX_RETURN_IF_FAILED(replacement.commit());
    return size;
}

void sayTheEnd(Report& report, const TreeSize& size, const std::string& path, bool onAStick) {
    report.closing.push_back(fmt::format("Backup in {}: {}.", vxcommon::printable(path), sizeText(size)));
    report.closing.push_back(fmt::format("Digest {}", report.digest));
    for (std::string& sentence : lackSentences(report.lacks, "The backup")) {
        report.closing.push_back(std::move(sentence));
    }
    if (report.exitStatus != kExitOk) {
        report.closing.push_back(fmt::format("The backup is incomplete (failed: {}); the rest is {}.",
                                             failedNames(report.rows),
                                             onAStick ? "on the stick, which may be removed" : "there"));
    } else if (onAStick) {
        report.closing.emplace_back("Safe to remove the stick.");
    }
}

Result<Report> backUpTo(const CloneContext& context, StickTarget& target, bool onAStick, const Means& means,
                        RunRecorder& recorder) {
    auto replacement = Replacement::begin(target);
    VX_RETURN_IF_FAILED(replacement);
    const auto root = CloneRoot::open(context.cloneRoot);
    VX_RETURN_IF_FAILED(root);
    const auto results = saveTelevision(context);
    VX_RETURN_IF_FAILED(results);
    if (context.stop.raised()) {
        return tl::make_unexpected(stopError(context.stop.signal()));
    }
    auto report = completePackage(context, root->tree(), *results, means);
    if (!report) {
        return report;
    }
    recorder.setDigest(report->digest);
    VX_RETURN_IF_FAILED(recorder.enter(RunPhase::Writing));
    context.view.notice("Writing the package to " + vxcommon::printable(target.path()) + ".");
    const auto carried =
        target.checkInPlace()
            .and_then([&] { return carryToStick(context, root->tree(), *replacement); })
            .and_then([&](const TreeSize& size) { return target.checkInPlace().map([&] { return size; }); });
    VX_RETURN_IF_FAILED(carried);
    sayTheEnd(*report, *carried, target.path(), onAStick);
    return report;
}

Result<Report> backUp(const CloneContext& context, const std::filesystem::path& folder,
                      const BackupOptions& options, RunRecorder& recorder) {
    VX_RETURN_IF_FAILED(checkSafe(context.cloneRoot));
    auto target = openTarget(context, folder);
    VX_RETURN_IF_FAILED(target);
    const auto onAStick = goesOntoAStick({target->parent(), target->path(), options.onThisDisk},
                                         context.cloneRoot, context.mounts);
    VX_RETURN_IF_FAILED(onAStick);
    VX_RETURN_IF_FAILED(target->checkReplaceable());
    // Checked before anything is created on the television or the stick.
    auto means = readyToSeal(context.engine, options.name.value_or(target->name()));
    VX_RETURN_IF_FAILED(means);
    recorder.setName(means->origin.name);
    means->mayLack = [&options](const Lack& lack) { return options.without.holds(lack); };
    auto report = backUpTo(context, *target, *onAStick, *means, recorder);
    if (report) {
        if (const auto unneeded = options.without.sentenceAboutUnneeded(report->lacks); !unneeded.empty()) {
            context.view.notice(unneeded);
        }
    }
    return report;
}

struct BackupArguments {
    std::string folder;
    std::string name;
    std::string without;
    bool named = false;
    bool onThisDisk = false;
    bool json = false;
};

Result<Report> backUpAsTold(const CloneContext& context, const BackupArguments& arguments) {
    auto without = Declared::parse(arguments.without);
    VX_RETURN_IF_FAILED(without);
    const auto called = arguments.named ? std::optional(arguments.name) : std::nullopt;
    return runBackup(context, arguments.folder, {called, std::move(*without), arguments.onThisDisk});
}

}  // namespace

Result<Report> runBackup(const CloneContext& context, const std::filesystem::path& folder,
                         const BackupOptions& options) {
    return recordedRun(context, {RunKind::Backup, folder, phasesOfBackup()},
                       [&](const CloneContext& shown, RunRecorder& recorder) {
                           return backUp(shown, folder, options, recorder);
                       });
}

void addBackupCommand(CLI::App& app, Action& chosen) {
    const auto arguments = std::make_shared<BackupArguments>();
    CLI::App* const verb = app.add_subcommand("backup", "Save this television into a folder on a stick");
    verb->add_option("DIR", arguments->folder, "The folder, such as /media/usb/clone")->required();
    const CLI::Option* const name =
        verb->add_option("--name", arguments->name, "What people call the package; else its folder's name");
    verb->add_option("--without", arguments->without,
                     "What this television does not have: that is no failure")
        ->join(',')
        ->type_name(kDeclaredNames);
    verb->add_flag("--on-this-disk", arguments->onThisDisk, "Allow a place on the television itself");
    verb->add_flag("--json", arguments->json, "Say everything as JSON, one object a line");
    verb->callback([&chosen, arguments, name] {
        arguments->named = name->count() != 0;
        chosen = [arguments](CloneEngine& engine) {
            return runCommand(engine, "backup", viewKindOfRun(arguments->json),
                              [&](const CloneContext& context) { return backUpAsTold(context, *arguments); });
        };
    });
}

}  // namespace vxclone
