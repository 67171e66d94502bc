#pragma once

#include <filesystem>
#include <functional>

#include "cloning_app/run/clone_run.h"
#include "cloning_app/run/run_record.h"

namespace vxclone {

/// Lets `run` work as the one run of this television, and keeps the record of it from its beginning to its
/// end. `package` is where on the stick; may be empty. A run before that died is named in a notice, and what
/// it left on the television's disk is put right. Errors: those of `run`; `TelevisionBusy`, naming the run
/// that goes on; the record cannot be written.
Result<Report> recordedRun(const CloneContext& context, RunKind kind, const std::filesystem::path& package,
                           const std::function<Result<Report>(RunRecorder& recorder)>& run);

/// The same for what looks at a package and changes nothing of the television: it has no record of its own.
/// Errors: those of `run`; `TelevisionBusy`.
Result<Report> unrecordedRun(const CloneContext& context, const std::function<Result<Report>()>& run);

}  // namespace vxclone
