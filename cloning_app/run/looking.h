#pragma once

#include <filesystem>
#include <optional>

#include "cloning_app/run/output.h"

namespace vxclone {

// What a person wants to know of packages where they lie. Nothing is copied and nothing changed, on the stick
// or on the television; the library is not asked, so that none of it checks a seal.

/// What is in the package in `folder`. `everyFile` names each of its files to people as well. Errors: there
/// is no package, or it cannot be read.
Result<Output> inspectPackage(const std::filesystem::path& folder, bool everyFile);

/// What sets the package in `folder` apart from this television as far as that can be told without a run, or,
/// where `other` is given, that one from it. The exit status tells whether anything does. Errors: there is no
/// package, or it cannot be read, or its settings file is damaged.
Result<Output> diffPackage(const std::filesystem::path& folder,
                           const std::optional<std::filesystem::path>& other);

/// The packages in the folder and in those up to two levels below it, and whether they fit. Errors: there is
/// no such folder, or it cannot be read.
Result<Output> listPackages(const std::filesystem::path& folder);

/// Where sticks are found.
inline constexpr const char* kMediaFolder = "/media";

}  // namespace vxclone
