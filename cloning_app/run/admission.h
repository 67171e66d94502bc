#pragma once

#include "cloning_app/run/integrity.h"
#include "cloning_app/run/staged_package.h"

namespace vxclone {

/// Lets a staged package in that fits, is unaltered and is the one that the user expects. Result: what was
/// examined, for the table. Errors: those of `examinePackage`; the gravest of what was found.
Result<Examination> admit(const CloneContext& context, const StagedPackage& package,
                          const RestoreOptions& options);

}  // namespace vxclone
