#include "cloning_app/run/recorded_run.h"

#include <fmt/format.h>

#include <system_error>

#include "cloning_app/package/safety_store.h"
#include "cloning_app/run/run_progress.h"
#include "cloning_app/run/status.h"
#include "cloning_app/run/visit.h"

namespace vxclone {

namespace {

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

void nameTheDead(ProgressView& view, const RunRecord& record) {
    view.notice(fmt::format("The {}, broke off in phase {}: {}.", describe(record), nameOf(record.phase),
                            consequenceOf(record.phase)));
}

CloneContext withView(const CloneContext& context, ProgressView& view) {
    return {context.engine, view, context.stop, context.cloneRoot, context.disk};
}

template <class Found>
Result<Found> lookWithoutATrace(const CloneContext& context, const ShownPhases& phases,
                                const std::function<Result<Found>(const CloneContext& shown)>& look) {
    const auto folder = recordFolderOf(context.cloneRoot);
    const auto last = readLastRun(folder);
    if (last && *last && (*last)->unfinished()) {
        nameTheDead(context.view, (*last)->record);
    }
    auto visit = Visit::begin(context);
    if (!visit) {
        return tl::make_unexpected(withTheOther(visit.error(), folder));
    }
    RunProgress progress(context.view, phases);
    auto found = look(withView(context, progress)).map_error([&folder](const Error& error) {
        return withTheOther(error, folder);
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

Result<Report> recordedRun(
    const CloneContext& context, const RunPlan& plan,
    const std::function<Result<Report>(const CloneContext& shown, RunRecorder& recorder)>& run) {
    const auto folder = recordFolderOf(context.cloneRoot);
    const RunPhase first = plan.kind == RunKind::Backup ? RunPhase::Saving : RunPhase::Staging;
    auto recorder =
        RunRecorder::begin(folder, {plan.kind, first, absolutePath(plan.package), "", secondsNow()});
    if (!recorder) {
        return tl::make_unexpected(withTheOther(recorder.error(), folder));
    }
    if (recorder->previous() && recorder->previous()->phase != RunPhase::Done) {
        nameTheDead(context.view, *recorder->previous());
    }
    removeLeftovers(folder);
    RunProgress progress(context.view, plan.phases, [&recorder](ShownPhase phase, int percent) {
        recorder->tell({phase, percent});
    });
    auto report = endDeadVisit(context).and_then([&] { return run(withView(context, progress), *recorder); });
    if (report) {
        progress.progress({ShownPhase::Closing});
    }
    const int status = report ? report->exitStatus : exitStatusOf(report.error().code);
    const auto ended = recorder->end(status, report ? report->rows : std::vector<Row>());
    if (!ended) {
        progress.notice("The end of this run is not recorded: " + ended.error().sentence + ".");
    }
    if (report) {
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
