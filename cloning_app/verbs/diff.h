#pragma once

#include <filesystem>

#include "cloning_app/verbs/command.h"

namespace vxclone {

/// Adds the verb `diff`; parsing it sets `chosen`.
void addDiffCommand(CLI::App& app, Action& chosen);

/// What sets this television apart from the package in `folder`. The library saves the television into its
/// clone folder for that, unless it shall be `quick`: then settings and pictures alone are compared. The
/// television and its clone folder are afterwards as they were. The exit status is 0 where nothing differs
/// and nothing was left out but for `quick`, else 1. Errors: there is no package, or it cannot be read, or
/// its settings file is damaged; those of `unrecordedRun` and `lookForComparison`.
Result<Output> diffWithTelevision(const CloneContext& context, const std::filesystem::path& folder,
                                  bool quick);

/// What sets the package in `folder` apart from the one in `other`, all of it. The exit status tells whether
/// anything does. Errors: there is no package, or it cannot be read, or its settings file is damaged.
Result<Output> diffPackages(const std::filesystem::path& folder, const std::filesystem::path& other);

}  // namespace vxclone
