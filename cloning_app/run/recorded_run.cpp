#include "cloning_app/run/recorded_run.h"

#include <fmt/format.h>

#include <cctype>
#include <system_error>
#include <utility>

#include "cloning_app/record/run_remains.h"
#include "cloning_app/record/status.h"
#include "cloning_app/run/run_progress.h"
#include "cloning_app/storage/clone_root.h"
#include "cloning_app/storage/kept_content.h"
#include "cloning_app/storage/safety_store.h"
#include "cloning_app/television/kept_run_keys.h"

namespace vxclone {

namespace {

constexpr const char* kPutRight =
    "A comparison broke off: what lay in the television's clone folder is there again.";

/// Puts back what lay in the clone folder. Result: whether anything was aside.
Result<bool> putCloneFolderBack(const std::filesystem::path& cloneRoot) {
    const auto dataFolder = recordFolderOf(cloneRoot);
    const auto aside = isContentAside(dataFolder);
    if (!aside || !*aside) {
        return aside;
    }
    return CloneRoot::open(cloneRoot).and_then(
        [&](const CloneRoot& root) { return putContentBack(dataFolder, root.tree()); });
}

/// None where there is no such folder; `unknown` where nobody can tell.
std::optional<std::filesystem::perms> modeOf(const std::filesystem::path& folder) {
    std::error_code reason;
    const auto status = std::filesystem::status(folder, reason);
    return status.type() == std::filesystem::file_type::not_found ? std::nullopt
                                                                  : std::optional(status.permissions());
}

std::string absolutePath(const std::filesystem::path& path) {
    std::error_code none;
    return path.empty() ? std::string() : std::filesystem::absolute(path, none).lexically_normal().string();
}

/// Says what is in the way.
Error withTheOther(Error error, const std::filesystem::path& folder) {
    if (error.code != ErrorCode::TelevisionBusy) {
        return error;
    }
    const auto last = readLastRun(folder);
    if (isLookGoingOn(folder)) {
        error.sentence =
            "another vxclone looks at this television (diff, verify or a dry run); wait for its end";
    } else if (last && *last && (*last)->goingOn) {
        error.sentence = fmt::format(
            "another vxclone works on this television ({}, phase {}); wait for its end (vxclone status "
            "--follow)",
            describe((*last)->record), nameOf((*last)->record.phase));
    }
    return error;
}

void sayWhatIsLeft(ProgressView& view, const RunRecord& record) {
    for (const std::string& sentence : sentencesForTheNextStart(record)) {
        view.notice(sentence);
    }
}

/// The error of a run that has been recorded, with what it left.
Error withWhatIsLeft(Error error, const RunRecord& record) {
    if (isStop(error.code)) {
        error.sentence = fmt::format("{}: {}", stopCauseOf(error.code), consequenceOf(record));
    } else if (remainsOf(record)) {
        error.sentence += "; " + consequenceOf(record);
    }
    return error;
}

Error withNothingLeft(Error error) {
    if (isStop(error.code)) {
        error.sentence = fmt::format("{}: {}", stopCauseOf(error.code), consequenceOfLooking());
    }
    return error;
}

/// The end of a run whose load nobody could interrupt, and that was stopped meanwhile.
std::string stopSentence(const Report& report, int signal, const RunRecord& record) {
    if (!report.brokenOff) {
        return "Stopped as you asked, after the end of the run.";
    }
    std::string cause(stopCauseOf(stopError(signal).code));
    cause.front() = static_cast<char>(std::toupper(static_cast<unsigned char>(cause.front())));
    return fmt::format("{}: {}.", cause, consequenceOf(record));
}

Result<void> recordTheEnd(RunRecorder& recorder, const Result<Report>& report) {
    if (!report) {
        return recorder.breakOff(exitStatusOf(report.error().code), {});
    }
    return report->brokenOff ? recorder.breakOff(report->exitStatus, report->rows)
                             : recorder.end(report->exitStatus, report->rows);
}

/// A restore that broke off on a full disk left its package in the clone folder, and took room for this
/// moment.
void makeRoomForAnUndo(const CloneContext& context) {
    if (auto root = CloneRoot::open(context.cloneRoot)) {
        static_cast<void>(root->empty());
    }
    if (const auto store = SafetyStore::open(recordFolderOf(context.cloneRoot))) {
        store->giveRoomBack();
    }
}

CloneContext withView(const CloneContext& context, ProgressView& view) {
    return {.engine = context.engine,
            .view = view,
            .stop = context.stop,
            .cloneRoot = context.cloneRoot,
            .disk = context.disk,
            .mounts = context.mounts};
}

template <class Found>
Result<Found> lookWithoutATrace(const CloneContext& context, const ShownPhases& phases,
                                const std::function<Result<Found>(const CloneContext& shown)>& look) {
    const auto folder = recordFolderOf(context.cloneRoot);
    const auto last = readLastRun(folder);
    if (last && *last && !(*last)->goingOn) {
        sayWhatIsLeft(context.view, (*last)->record);
    }
    auto visit = Visit::begin(context);
    if (!visit) {
        return tl::make_unexpected(withTheOther(visit.error(), folder));
    }
    RunProgress progress(context.view, phases);
    auto found = look(withView(context, progress)).map_error([&folder](const Error& error) {
        return withTheOther(withNothingLeft(error), folder);
    });
    if (const auto ended = visit->end(); found && !ended) {
        return tl::make_unexpected(ended.error());
    }
    if (found) {
        progress.complete();
    }
    return found;
}

}  // namespace

Result<void> endDeadVisit(const CloneContext& context) {
    const auto put = putCloneFolderBack(context.cloneRoot);
    VX_RETURN_IF_FAILED(put);
    if (*put) {
        context.view.notice(kPutRight);
    }
    return putRunKeysBack(recordFolderOf(context.cloneRoot));
}

Visit::Visit(LookHold hold, std::filesystem::path cloneRoot, std::optional<std::filesystem::perms> mode)
    : hold_(std::make_unique<LookHold>(std::move(hold))), cloneRoot_(std::move(cloneRoot)), mode_(mode) {}

Visit::~Visit() {
    static_cast<void>(end());
}

Result<Visit> Visit::begin(const CloneContext& context) {
    auto hold = LookHold::begin(recordFolderOf(context.cloneRoot));
    VX_RETURN_IF_FAILED(hold);
    VX_RETURN_IF_FAILED(endDeadVisit(context));
    const auto mode = modeOf(context.cloneRoot);
    const auto aside = CloneRoot::open(context.cloneRoot).and_then([&](const CloneRoot& root) {
        return setContentAside(recordFolderOf(context.cloneRoot), root.tree());
    });
    VX_RETURN_IF_FAILED(aside);
    return Visit(std::move(*hold), context.cloneRoot, mode);
}

Result<void> Visit::end() {
    if (hold_ == nullptr) {
        return {};
    }
    const auto hold = std::move(hold_);
    const auto put = putCloneFolderBack(cloneRoot_);
    std::error_code stays;
    if (mode_ && mode_ != std::filesystem::perms::unknown) {
        std::filesystem::permissions(cloneRoot_, *mode_, stays);
    } else if (!mode_ && put) {
        std::filesystem::remove(cloneRoot_, stays);
    }
    const auto keys = putRunKeysBack(recordFolderOf(cloneRoot_));
    return put ? keys : tl::make_unexpected(put.error());
}

Result<Report> recordedRun(
    const CloneContext& context, const RunPlan& plan,
    const std::function<Result<Report>(const CloneContext& shown, RunRecorder& recorder)>& run) {
    const auto folder = recordFolderOf(context.cloneRoot);
    const RunPhase first = plan.kind == RunKind::Backup ? RunPhase::Saving : RunPhase::Staging;
    const RunRecord record{.kind = plan.kind,
                           .phase = first,
                           .package = absolutePath(plan.package),
                           .digest = {},
                           .begun = secondsNow()};
    auto recorder = RunRecorder::begin(folder, record);
    if (!recorder && recorder.error().code == ErrorCode::TelevisionFull && plan.kind == RunKind::Undo) {
        makeRoomForAnUndo(context);
        recorder = RunRecorder::begin(folder, record);
    }
    if (!recorder) {
        return tl::make_unexpected(withTheOther(recorder.error(), folder));
    }
    if (recorder->previous()) {
        sayWhatIsLeft(context.view, *recorder->previous());
    }
    removeLeftovers(folder);
    RunProgress progress(context.view, plan.phases, [&recorder](ShownPhase phase, int percent) {
        recorder->tell({phase, percent});
    });
    auto report = endDeadVisit(context).and_then([&] { return run(withView(context, progress), *recorder); });
    if (report) {
        progress.progress({ShownPhase::Closing});
    }
    const bool stopped = plan.kind != RunKind::Backup && context.stop.raised();
    if (report && stopped) {
        report->exitStatus = exitStatusOf(stopError(context.stop.signal()).code);
    }
    if (const auto ended = recordTheEnd(*recorder, report); !ended) {
        progress.notice("The end of this run is not recorded: " + ended.error().sentence + ".");
    }
    if (!report) {
        return tl::make_unexpected(withWhatIsLeft(report.error(), recorder->record()));
    }
    if (stopped) {
        report->closing.push_back(stopSentence(*report, context.stop.signal(), recorder->record()));
    }
    if (!report->brokenOff) {
        progress.complete();
    }
    return report;
}

Result<Report> unrecordedRun(const CloneContext& context, const ShownPhases& phases,
                             const std::function<Result<Report>(const CloneContext& shown)>& look) {
    return lookWithoutATrace(context, phases, look);
}

Result<Output> unrecordedRun(const CloneContext& context, const ShownPhases& phases,
                             const std::function<Result<Output>(const CloneContext& shown)>& look) {
    return lookWithoutATrace(context, phases, look);
}

}  // namespace vxclone
