#pragma once

#include <filesystem>

#include "cloning_app/verbs/command.h"

namespace vxclone {

/// Adds the verb `list`; parsing it sets `chosen`.
void addListCommand(CLI::App& app, Action& chosen);

/// The packages in the folder and up to two levels below it, and whether they fit. Errors: there is no such
/// folder, or it cannot be read.
Result<Output> listPackages(const std::filesystem::path& folder);

}  // namespace vxclone
