#pragma once

#include <filesystem>

#include "cloning_app/verbs/command.h"

namespace vxclone {

/// Adds the verb `inspect`; parsing it sets `chosen`.
void addInspectCommand(CLI::App& app, Action& chosen);

/// What is in the package in `folder`. `everyFile` names each of its files to people as well. Errors: there
/// is no package, or it cannot be read.
Result<Output> inspectPackage(const std::filesystem::path& folder, bool everyFile);

}  // namespace vxclone
