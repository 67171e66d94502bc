#pragma once

#include <filesystem>
#include <functional>

#include "cloning_app/run/clone_run.h"
#include "cloning_app/run/run_record.h"
#include "cloning_app/run/shown_phase.h"

namespace vxclone {

/// What is known of a run before it begins.
struct RunPlan {
    RunKind kind;
    std::filesystem::path package;  ///< where on the stick; may be empty
    ShownPhases phases;
};

/// Lets `run` work as the one run of this television, and keeps the record of it from its beginning to its
/// end. What `run` gets is the context with a view that makes one percentage of the phases. A run before that
/// died is named in a notice, and what it left on the television's disk is put right. Errors: those of `run`;
/// `TelevisionBusy`, naming the run that goes on; the record cannot be written.
Result<Report> recordedRun(
    const CloneContext& context, const RunPlan& plan,
    const std::function<Result<Report>(const CloneContext& shown, RunRecorder& recorder)>& run);

/// The same for what looks at a package and changes nothing of the television: it has no record of its own.
/// Errors: those of `run`; `TelevisionBusy`.
Result<Report> unrecordedRun(const CloneContext& context, const ShownPhases& phases,
                             const std::function<Result<Report>(const CloneContext& shown)>& run);

}  // namespace vxclone
