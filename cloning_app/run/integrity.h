#pragma once

#include <vector>

#include "cloning_app/package/identity.h"
#include "cloning_app/run/check.h"
#include "cloning_app/run/clone_engine.h"

namespace vxclone {

/// Checks that something can be sealed on this television. Errors: `NoKey`, or the library broke off.
Result<void> requireKey(CloneEngine& engine);

/// Completes the finished backup in the clone folder `package`: its identity, the list of its contents, the
/// seal over all; all of it is read back. On failure no seal and no working file of the library is left.
/// Errors: `IdentityUnusable`, `NotSealed`, the disk says no, or the library broke off.
Result<std::vector<Check>> sealPackage(CloneEngine& engine, const Tree& package, const Identity& identity);

/// Finds out whether the package in the clone folder `package` fits this television and is as it was sealed.
/// The judgement is the library's; what it does not tell is found out here, and a package is good only when
/// both say so. Result: one check for each subject; none of them stands for an error in the sense of a failed
/// examination. Errors: the package or the disk cannot be read or written, or the library broke off.
Result<std::vector<Check>> examinePackage(CloneEngine& engine, const Tree& package);

/// Lets a difference of the model pass, where the values of both sides are known. Result: whether there was
/// one.
bool overrideModel(std::vector<Check>& checks);

}  // namespace vxclone
