#include <fmt/format.h>

#include <algorithm>

#include "cloning_app/run/loading.h"
#include "cloning_app/run/recorded_run.h"
#include "cloning_app/run/safety_backup.h"
#include "cloning_app/run/staged_package.h"
#include "cloning_app/storage/kept_content.h"
#include "cloning_app/television/television_folders.h"
#include "cloning_app/verbs/dry_run.h"
#include "cloning_app/verbs/verbs.h"
#include "common/terminal_table.h"

namespace vxclone {

namespace {

/// A category that puts into effect what another one brings.
struct Need {
    VXClone category;
    VXClone needed;
    std::string_view why;
};

constexpr std::array kNeeds = {
    Need{VXCLONE_NTP_SETTINGS_DATA, VXCLONE_VCONF_DATA, "the values travel there"},
    Need{VXCLONE_VXTV_TIMER_DATA, VXCLONE_BROADCAST_TVS, "a timer names its channel by the number"},
};

void sayWhatIsNeeded(ProgressView& view, const Plan& plan) {
    for (const Need& need : kNeeds) {
        if (plan.holds(need.category) && !plan.holds(need.needed)) {
            view.notice(fmt::format("{} without {}: {}, and this television's own are used.",
                                    categoryOf(need.category).name, categoryOf(need.needed).name, need.why));
        }
    }
}

/// Without a safety backup a full disk may have room.
Error withTheWayOn(Error error, const RestoreOptions& options) {
    if (options.safety && error.code == ErrorCode::TelevisionFull) {
        error.sentence += "; a safety backup needs some of that, --no-safety leaves it out";
    }
    return error;
}

/// Everything that comes before the television is touched.
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

/// How much more one is than the other.
TreeSize beyond(const TreeSize& one, const TreeSize& other) {
    return {one.entries - std::min(one.entries, other.entries), one.files - std::min(one.files, other.files),
            one.bytes - std::min(one.bytes, other.bytes)};
}

Result<Report> dryRun(const CloneContext& context, const std::filesystem::path& folder,
                      const RestoreOptions& options) {
    TreeSize needed;
    // The restore itself would empty the clone folder, whose content waits aside now.
    const auto reserve = [&](const Tree& package) {
        needed = safetyReserve(package);
        const TreeSize whole = together(loadReserve(package), options.safety ? needed : TreeSize());
        return beyond(whole, sizeOfContentAside(recordFolderOf(context.cloneRoot)));
    };
    const auto ready = getReady(context, folder, options, reserve);
    return ready ? tellWhatWouldBeDone(context, *ready, options, needed) : tl::make_unexpected(ready.error());
}

Result<Report> restore(const CloneContext& context, const std::filesystem::path& folder,
                       const RestoreOptions& options, RunRecorder& recorder) {
    VX_RETURN_IF_FAILED(checkSafe(context.cloneRoot));
    const auto reserve = [&options](const Tree& package) {
        return together(loadReserve(package), options.safety ? safetyReserve(package) : TreeSize());
    };
    auto ready = getReady(context, folder, options, reserve);
    VX_RETURN_IF_FAILED(ready);
    LoadOptions loading{options.readBack, options.keepIdentity, options.without};
    recorder.setName(ready->examined.name);
    recorder.setDigest(ready->examined.digest.value_or(""));
    if (options.safety) {
        VX_RETURN_IF_FAILED(recorder.enter(RunPhase::Safety));
        auto before = keepSafety(context, *ready, options.without, recorder.record());
        VX_RETURN_IF_FAILED(before);
        loading.before = std::move(*before);
        recorder.setWayBack();
    }
    auto report = load(context, *ready, loading, recorder);
    if (report) {
        report->closing.push_back(
            endSentence(*report, "Restored from " + vxcommon::printable(ready->package.origin())));
        if (options.safety) {
            report->closing.emplace_back("To go back: vxclone undo.");
        }
    }
    return report;
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

}  // namespace vxclone
