#pragma once

#include <filesystem>

#include "cloning_app/verbs/command.h"

namespace vxclone {

/// Adds the verb `restore`; parsing it sets `chosen`.
void addRestoreCommand(CLI::App& app, Action& chosen);

/// Loads the categories of the package in `folder` into the television, if it fits and is unaltered. What the
/// package lacks is left as it is. Result: the report; its exit status says whether a category failed,
/// differs or is lacking. Errors: nothing of the television was touched before the run began, and the clone
/// folder is empty unless it was not yet touched either.
Result<Report> runRestore(const CloneContext& context, const std::filesystem::path& folder,
                          const RestoreOptions& options);

}  // namespace vxclone
