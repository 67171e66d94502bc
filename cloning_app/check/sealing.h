#pragma once

#include <string>
#include <vector>

#include "cloning_app/package/manifest.h"
#include "cloning_app/package/package_key.h"
#include "cloning_app/report/finding.h"
#include "cloning_app/report/result_table.h"
#include "cloning_app/television/clone_engine.h"

namespace vxclone {

/// Checks that something can be sealed on this television. Result: the key for the manifest. Errors: `NoKey`,
/// naming the key that is missing, or the library broke off.
Result<PackageKey> requireKeys(CloneEngine& engine);

/// A finished package.
struct SealedPackage {
    std::vector<Check> checks;
    std::string digest;  ///< the manifest's: what names exactly this package
};

/// Completes the finished backup in the clone folder `package`: its identity, the manifest, the seal over
/// all; what the library made is read back. On failure no seal and no working file of the library is left.
/// Errors: `IdentityUnusable`, `NotSealed`, the disk says no, or the library broke off.
Result<SealedPackage> sealPackage(CloneEngine& engine, const Tree& package, const PackageOrigin& origin,
                                  const PackageKey& key);

/// What the package of a backup that begins now says of where it comes from, its results still missing.
/// Errors: the name is none (`BadArguments`), or the television does not say what it is (`IdentityUnusable`).
Result<PackageOrigin> originOfBackup(const std::string& name);

/// The rows of a backup as its package keeps them.
std::vector<ManifestResult> resultsOf(const std::vector<Row>& rows);

}  // namespace vxclone
