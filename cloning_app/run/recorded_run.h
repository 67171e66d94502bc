#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>

#include "cloning_app/record/run_record.h"
#include "cloning_app/report/output.h"
#include "cloning_app/report/shown_phase.h"
#include "cloning_app/run/clone_run.h"

namespace vxclone {

/// A stay on the television that leaves no trace: while this object lives, no run begins, and the clone
/// folder is empty and serves for whatever is looked at. At the end the clone folder is as it was. A process
/// may die meanwhile: the next run or visit puts it right.
class Visit {
 public:
    /// Errors: `TelevisionBusy`; the television's disk says no; the settings store refuses what a visit that
    /// died has to be put right with.
    static Result<Visit> begin(const CloneContext& context);

    Visit(Visit&&) = default;
    Visit& operator=(Visit&&) = delete;
    Visit(const Visit&) = delete;
    Visit& operator=(const Visit&) = delete;
    /// As `end`.
    ~Visit();

    /// Puts everything back. Errors: those of `begin`; what is not back yet is put back by the next one.
    Result<void> end();

 private:
    /// `mode` is that of the clone folder; none where it was not there.
    Visit(LookHold hold, std::filesystem::path cloneRoot, std::optional<std::filesystem::perms> mode);

    std::unique_ptr<LookHold> hold_;  ///< none once the visit has ended
    std::filesystem::path cloneRoot_;
    std::optional<std::filesystem::perms> mode_;
};

/// Puts right what a visit left that died: the clone folder and the keys of the settings store. For the
/// holder of the television alone. Errors: those of `Visit::begin`.
Result<void> endDeadVisit(const CloneContext& context);

/// What is known of a run before it begins.
struct RunPlan {
    RunKind kind;
    std::filesystem::path package;  ///< its path on the stick; may be empty
    ShownPhases phases;
};

/// Lets `run` work as the one run of this television, and keeps the record of it from its beginning to its
/// end. What `run` gets is the context with a view that makes one percentage of the phases. A run before that
/// died is named in a notice, and what it left on the television's disk is put right. Errors: those of `run`;
/// `TelevisionBusy`, naming the run that goes on; the record cannot be written.
Result<Report> recordedRun(
    const CloneContext& context, const RunPlan& plan,
    const std::function<Result<Report>(const CloneContext& shown, RunRecorder& recorder)>& run);

/// Lets `look` look at a package and the television, with the clone folder empty and its own meanwhile, and
/// leaves no trace of that on the television; there is no record. What `look` gets is the context with a view
/// that makes one percentage of the phases. A run that died is named in a notice, and what it left is put
/// right. Errors: those of `look`; those of `Visit`, and the next run or look then puts right what is left.
Result<Report> unrecordedRun(const CloneContext& context, const ShownPhases& phases,
                             const std::function<Result<Report>(const CloneContext& shown)>& look);
Result<Output> unrecordedRun(const CloneContext& context, const ShownPhases& phases,
                             const std::function<Result<Output>(const CloneContext& shown)>& look);

}  // namespace vxclone
