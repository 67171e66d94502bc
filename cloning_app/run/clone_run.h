#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "cloning_app/package/disk_calls.h"
#include "cloning_app/run/clone_engine.h"
#include "cloning_app/run/progress_view.h"
#include "cloning_app/run/stop_flag.h"

namespace vxclone {

/// What a run works with; everything stays the caller's.
struct CloneContext {
    CloneEngine& engine;
    ProgressView& view;
    const StopFlag& stop;
    std::filesystem::path cloneRoot;   ///< where the engine writes and reads
    DiskCalls disk = realDiskCalls();  ///< for what is written to the stick
};

/// Saves the television into `folder`. Result: the report, the package being whole and flushed in `folder`;
/// its exit status says whether a category failed. Errors: `folder` is as it was.
Result<Report> runBackup(const CloneContext& context, const std::filesystem::path& folder);

/// Loads the categories of the package in `folder` into the television. Result: the report; its exit status
/// says whether a category failed. Errors: up to the copy of the package the television's settings are
/// untouched.
Result<Report> runRestore(const CloneContext& context, const std::filesystem::path& folder,
                          const std::vector<VXClone>& list);

/// Shows the result as the run's end. Result: the exit status.
int conclude(const Result<Report>& result, ProgressView& view);

}  // namespace vxclone
