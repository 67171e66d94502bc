#pragma once

#include <filesystem>

#include "cloning_app/verbs/command.h"

namespace vxclone {

/// Adds the verb `inspect`; parsing it sets `chosen`.
void addInspectCommand(CLI::App& app, Action& chosen);

/// The content of the package in `folder`. With `everyFile`, people also see each of its files. Errors: there
/// is no package, or it cannot be read.
Result<Output> inspectPackage(const std::filesystem::path& folder, bool everyFile);

}  // namespace vxclone
