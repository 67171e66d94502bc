#pragma once

#include <filesystem>

#include "cloning_app/verbs/command.h"

namespace vxclone {

/// Adds the verb `restore`; parsing it sets `chosen`.
void addRestoreCommand(CLI::App& app, Action& chosen);

/// Loads the categories of the package in `folder` into the television, if it fits and is unaltered. The
/// television keeps its own where the package lacks something. Result: the report; its exit status says
/// whether a category failed, differs or is lacking. Errors: nothing on the television has changed, except
/// that the clone folder may be empty.
Result<Report> runRestore(const CloneContext& context, const std::filesystem::path& folder,
                          const RestoreOptions& options);

}  // namespace vxclone
