#pragma once

#include <filesystem>

#include "cloning_app/run/clone_run.h"
#include "cloning_app/run/output.h"

namespace vxclone {

// What a person wants to know of packages where they lie. Nothing is copied and nothing changed, on the stick
// or on the television; the library checks no seal for it.

/// What is in the package in `folder`. `everyFile` names each of its files to people as well. Errors: there
/// is no package, or it cannot be read.
Result<Output> inspectPackage(const std::filesystem::path& folder, bool everyFile);

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

/// The packages in the folder and in those up to two levels below it, and whether they fit. Errors: there is
/// no such folder, or it cannot be read.
Result<Output> listPackages(const std::filesystem::path& folder);

/// Where sticks are found.
inline constexpr const char* kMediaFolder = "/media";

}  // namespace vxclone
