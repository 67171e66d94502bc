#pragma once

#include <vector>

#include "cloning_app/package/identity.h"
#include "cloning_app/run/check.h"

namespace vxclone {

/// Compares what a package says of its television with what this one says: a check for each part.
std::vector<Check> compareIdentities(const Identity& television, const Identity& package);

/// Reads the identity file of a package. Result: none when there is none. Errors: it cannot be read.
Result<std::optional<Identity>> readIdentity(const Tree& package);

/// What a package without an identity file is: not complete.
Check missingIdentity();

/// Lets a difference of the model pass, where the values of both sides are known. Result: whether there was
/// one.
bool overrideModel(std::vector<Check>& checks);

}  // namespace vxclone
