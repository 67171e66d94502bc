#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "cloning_app/run/clone_run.h"
#include "cloning_app/run/follower.h"
#include "cloning_app/storage/stick_target.h"

namespace vxclone {

/// Finds the folder that the user named to read from; nothing there is changed. Errors: those of
/// `StickTarget`, or the folder is the television's own (`BadArguments`).
Result<StickTarget> openSource(const CloneContext& context, const std::filesystem::path& folder);

/// The same to back up to: puts right what an interrupted backup left there.
Result<StickTarget> openTarget(const CloneContext& context, const std::filesystem::path& folder);

/// Lets the engine work on the categories of `list` and follows it; a stop does not keep it from beginning.
/// Result: what it reported. Errors: the engine's own.
Result<ResultList> runAndFollow(const CloneContext& context, Direction direction,
                                const std::vector<VXClone>& list, const std::function<Result<void>()>& run);

/// Lets the library save the television into the clone folder, and follows it; once more where it saved what
/// it did not report. Result and errors: those of `runAndFollow`; a stop before it began; the settings store
/// refused (`SettingsRefused`).
Result<ResultList> saveTelevision(const CloneContext& context);

}  // namespace vxclone
