#pragma once

#include <filesystem>

#include "cloning_app/verbs/command.h"

namespace vxclone {

/// Adds the verb `verify`; parsing it sets `chosen`.
void addVerifyCommand(CLI::App& app, Action& chosen);

/// Finds out whether the package in `folder` fits the television and is unaltered, on a copy of it in the
/// clone folder, which is emptied at the end. Result: the report with every finding; its exit status is that
/// of the gravest, in the order of `problemOf`. Errors: there is no package to examine, or that failed.
Result<Report> runVerify(const CloneContext& context, const std::filesystem::path& folder);

}  // namespace vxclone
