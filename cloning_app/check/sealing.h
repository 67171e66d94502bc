#pragma once

#include <string>
#include <vector>

#include "cloning_app/package/manifest.h"
#include "cloning_app/package/package_key.h"
#include "cloning_app/report/finding.h"
#include "cloning_app/report/result_table.h"
#include "cloning_app/television/clone_engine.h"

namespace vxclone {

/// Checks that this television can seal a package. Result: the key for the manifest. Errors: `NoKey` with the
/// missing key, or a failure of the library.
Result<PackageKey> requireKeys(CloneEngine& engine);

/// A finished package.
struct SealedPackage {
    std::vector<Check> checks;
    std::string digest;  ///< of the manifest; it identifies exactly this package
};

/// Completes the finished backup in the clone folder `package`: its identity, the manifest, and the seal over
/// everything. The results of the library are read back. On failure no seal and no working file of the
/// library stays. Errors: `IdentityUnusable`, `NotSealed`, a failure of the disk or of the library.
Result<SealedPackage> sealPackage(CloneEngine& engine, const Tree& package, const PackageOrigin& origin,
                                  const PackageKey& key);

/// The origin of a package whose backup begins now, still without results. Errors: an invalid name
/// (`BadArguments`), or the television does not report its identity (`IdentityUnusable`).
Result<PackageOrigin> originOfBackup(const std::string& name);

/// The rows of a backup in the form of the manifest.
std::vector<ManifestResult> resultsOf(const std::vector<Row>& rows);

}  // namespace vxclone
