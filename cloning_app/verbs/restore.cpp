#include "cloning_app/verbs/restore.h"

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "cloning_app/run/loading.h"
#include "cloning_app/run/recorded_run.h"
#include "cloning_app/run/safety_backup.h"
#include "cloning_app/run/staged_package.h"
#include "cloning_app/storage/kept_content.h"
#include "cloning_app/storage/safety_store.h"
#include "cloning_app/television/television_folders.h"
#include "cloning_app/verbs/dry_run.h"
#include "common/terminal_table.h"

namespace vxclone {

namespace {

void sayWhatIsNeeded(ProgressView& view, const Plan& plan) {
    for (const Category& category : categories()) {
        const Need& need = category.need;
        if (!need.why.empty() && plan.holds(category.value) && !plan.holds(need.category)) {
            view.notice(fmt::format("{} without {}: {}, and this television's own are used.", category.name,
                                    categoryOf(need.category).name, need.why));
        }
    }
}

/// Without a safety backup, the room on a full disk may be sufficient.
Error withTheWayOn(Error error, const RestoreOptions& options) {
    if (options.safety && error.code == ErrorCode::TelevisionFull) {
        error.sentence += "; a safety backup needs some of that, --no-safety leaves it out";
    }
    return error;
}

/// All steps before the television is changed.
Result<ReadyPackage> getReady(const CloneContext& context, const std::filesystem::path& folder,
                              const RestoreOptions& options, const StagedPackage::Reserve& reserve) {
    auto package = StagedPackage::bring(context, folder, reserve);
    if (!package) {
        return tl::make_unexpected(withTheWayOn(package.error(), options));
    }
    auto examined = admit(context, *package, options);
    VX_RETURN_IF_FAILED(examined);
    Plan plan{options.list, {}, options.everything};
    sayWhatIsNeeded(context.view, plan);
    return makeReady(context, std::move(*package), std::move(*examined), std::move(plan));
}

/// The amount by which `one` exceeds `other`.
TreeSize beyond(const TreeSize& one, const TreeSize& other) {
    return {one.entries - std::min(one.entries, other.entries), one.files - std::min(one.files, other.files),
            one.bytes - std::min(one.bytes, other.bytes)};
}

/// What a way back needs on the disk: the safety backup, and the room that is reserved for the undo.
TreeSize wayBack(const TreeSize& safety) {
    return together(safety, {1, 1, kRoomForAnUndo});
}

Result<Report> dryRun(const CloneContext& context, const std::filesystem::path& folder,
                      const RestoreOptions& options) {
    TreeSize needed;
    // A restore would empty the clone folder, whose content is set aside now.
    const auto reserve = [&](const Tree& package) {
        needed = safetyReserve(package);
        const TreeSize whole = together(loadReserve(package), options.safety ? wayBack(needed) : TreeSize());
        return beyond(whole, sizeOfContentAside(recordFolderOf(context.cloneRoot)));
    };
    const auto ready = getReady(context, folder, options, reserve);
    return ready ? tellWhatWouldBeDone(context, *ready, options, needed) : tl::make_unexpected(ready.error());
}

Result<Report> restore(const CloneContext& context, const std::filesystem::path& folder,
                       const RestoreOptions& options, RunRecorder& recorder) {
    // The library would follow links and mounts out of these folders, so they are checked before it runs.
    VX_RETURN_IF_FAILED(checkSafe(context.cloneRoot));
    const auto reserve = [&options](const Tree& package) {
        return together(loadReserve(package), options.safety ? wayBack(safetyReserve(package)) : TreeSize());
    };
    auto ready = getReady(context, folder, options, reserve);
    VX_RETURN_IF_FAILED(ready);
    LoadOptions loading{
        .readBack = options.readBack, .keepIdentity = options.keepIdentity, .without = options.without};
    recorder.setName(ready->examined.name);
    recorder.setDigest(ready->examined.digest.value_or(""));
    if (options.safety) {
        VX_RETURN_IF_FAILED(recorder.enter(RunPhase::Safety));
        // Only the user may decide to restore without a way back, so a failed safety backup ends the run.
        auto before = keepSafety(context, *ready, options.without, recorder.record());
        VX_RETURN_IF_FAILED(before);
        loading.before = std::move(*before);
        recorder.setWayBack();
    }
    auto report = load(context, *ready, loading, recorder);
    if (report) {
        report->closing.push_back(
            endSentence(*report, "Restored from " + vxcommon::printable(ready->package.origin())));
        // An older safety backup is not from before this restore, so undo is not offered with it.
        if (options.safety) {
            report->closing.emplace_back("To go back: vxclone undo.");
        }
    }
    return report;
}

struct RestoreArguments {
    std::string folder;
    std::string only;
    std::string except;
    std::string expect;
    std::string without;
    bool all = true;
    bool excepted = false;  ///< `--except` is given, possibly empty
    bool forceModel = false;
    bool keepIdentity = false;
    bool dryRun = false;
    bool quick = false;
    bool noSafety = false;
    bool noReadBack = false;
    bool json = false;
};

constexpr const char* kCategories = "CATEGORY,...";
constexpr std::size_t kFewestDigits = 16;
constexpr std::size_t kMostDigits = 64;

/// Checks for a digest, or for so many of its first digits that another package does not match by chance.
/// Result: empty, or the mistake.
std::string isDigest(const std::string& text) {
    const bool good = text.size() >= kFewestDigits && text.size() <= kMostDigits &&
                      text.find_first_not_of("0123456789abcdef") == std::string::npos;
    return good ? "" : "give 16 to 64 digits of a digest, 0-9 and a-f, from its beginning";
}

/// The categories after `--only` and `--except` were applied.
Result<std::vector<VXClone>> listOf(const RestoreArguments& arguments) {
    if (!arguments.all) {
        return parseCategories(arguments.only);
    }
    std::vector<VXClone> list = allCategories();
    if (!arguments.excepted) {
        return list;
    }
    const auto without = parseCategories(arguments.except);
    if (!without) {
        return without;
    }
    list.erase(std::remove_if(list.begin(), list.end(),
                              [&without](VXClone category) {
                                  return std::find(without->begin(), without->end(), category) !=
                                         without->end();
                              }),
               list.end());
    return list.empty()
               ? failure(ErrorCode::BadArguments, "--except leaves no category to load; name fewer of them")
               : Result<std::vector<VXClone>>(std::move(list));
}

Result<Report> restoreAsTold(const CloneContext& context, const RestoreArguments& arguments) {
    const auto list = listOf(arguments);
    VX_RETURN_IF_FAILED(list);
    auto without = Declared::parse(arguments.without);
    VX_RETURN_IF_FAILED(without);
    return runRestore(context, arguments.folder,
                      {.list = *list,
                       .forceModel = arguments.forceModel,
                       .everything = arguments.all,
                       .expect = arguments.expect,
                       .safety = !arguments.noSafety,
                       .readBack = !arguments.noReadBack,
                       .keepIdentity = arguments.keepIdentity,
                       .dryRun = arguments.dryRun,
                       .without = std::move(*without),
                       .quick = arguments.quick});
}

}  // namespace

Result<Report> runRestore(const CloneContext& context, const std::filesystem::path& folder,
                          const RestoreOptions& options) {
    if (std::none_of(options.list.begin(), options.list.end(),
                     [](VXClone category) { return isLoaded(categoryOf(category)); })) {
        return failure(ErrorCode::BadArguments,
                       "nothing of the chosen categories can be restored; choose others as well");
    }
    if (options.dryRun) {
        return unrecordedRun(context, phasesOfDryRun(options.quick),
                             std::function<Result<Report>(const CloneContext&)>(
                                 [&](const CloneContext& shown) { return dryRun(shown, folder, options); }));
    }
    return recordedRun(context, {RunKind::Restore, folder, phasesOfLoad(options.safety, options.readBack)},
                       [&](const CloneContext& shown, RunRecorder& recorder) {
                           return restore(shown, folder, options, recorder);
                       });
}

void addRestoreCommand(CLI::App& app, Action& chosen) {
    const auto arguments = std::make_shared<RestoreArguments>();
    CLI::App* const verb = app.add_subcommand("restore", "Load a package on a stick into this television");
    verb->add_option("DIR", arguments->folder, "The package's folder, such as /media/usb/clone")->required();
    const CLI::Option* const only =
        verb->add_option("--only", arguments->only, "Load only these, separated by commas")
            ->join(',')
            ->type_name(kCategories);
    const CLI::Option* const except =
        verb->add_option("--except", arguments->except, "Load all but these; not together with --only")
            ->join(',')
            ->type_name(kCategories)
            ->excludes("--only");
    verb->add_flag("--dry-run", arguments->dryRun, "Show what would change, and change nothing");
    verb->add_flag("--quick", arguments->quick, "A dry run of settings and pictures only")
        ->needs("--dry-run");
    verb->add_flag("--keep-identity", arguments->keepIdentity,
                   "Keep this television's addresses, numbers and PIN");
    verb->add_flag("--no-safety", arguments->noSafety,
                   "No safety backup first; vxclone undo cannot go back then");
    verb->add_flag("--no-read-back", arguments->noReadBack,
                   "No comparison afterwards, unless a result is missing");
    verb->add_option("--without", arguments->without,
                     "What this television does not have; undo does not need it")
        ->join(',')
        ->type_name(kDeclaredNames);
    verb->add_flag("--force-model", arguments->forceModel, "Load a package that was made on another model");
    verb->add_option("--expect", arguments->expect, "Load only the package with this digest of its backup")
        ->check(isDigest)
        ->type_name("DIGEST");
    verb->add_flag("--json", arguments->json, "Say everything as JSON, one object a line");
    verb->callback([&chosen, arguments, only, except] {
        arguments->all = only->count() == 0;
        arguments->excepted = except->count() != 0;
        chosen = [arguments](CloneEngine& engine) {
            return runCommand(
                engine, "restore", viewKindOfRun(arguments->json),
                [&](const CloneContext& context) { return restoreAsTold(context, *arguments); });
        };
    });
}

}  // namespace vxclone
