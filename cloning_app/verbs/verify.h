#pragma once

#include <filesystem>

#include "cloning_app/verbs/command.h"

namespace vxclone {

/// Adds the verb `verify`; parsing it sets `chosen`.
void addVerifyCommand(CLI::App& app, Action& chosen);

/// Checks whether the package in `folder` fits the television and is unaltered. It is read on the stick; only
/// the identity and the seal are copied to the clone folder meanwhile. Result: the report with every finding;
/// its exit status is that of the most serious one, in the order of `problemOf`. Errors: there is no package
/// to examine, or the examination failed.
Result<Report> runVerify(const CloneContext& context, const std::filesystem::path& folder);

}  // namespace vxclone
