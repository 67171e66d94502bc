#pragma once

#include <filesystem>

#include "cloning_app/verbs/command.h"

namespace vxclone {

/// Adds the verb `diff`; parsing it sets `chosen`.
void addDiffCommand(CLI::App& app, Action& chosen);

/// The differences between this television and the package in `folder`. For this the library saves the
/// television into its clone folder, unless `quick` is set: then only settings and pictures are compared.
/// Afterwards the television and its clone folder are as before. The exit status is 0 if nothing differs and
/// everything was compared, except what `quick` leaves out; otherwise 1. Errors: there is no package, it
/// cannot be read, or its settings file is damaged; those of `unrecordedRun` and `lookForComparison`.
Result<Output> diffWithTelevision(const CloneContext& context, const std::filesystem::path& folder,
                                  bool quick);

/// All differences between the packages in `folder` and `other`. The exit status says whether there are any.
/// Errors: there is no package, it cannot be read, or its settings file is damaged.
Result<Output> diffPackages(const std::filesystem::path& folder, const std::filesystem::path& other);

}  // namespace vxclone
