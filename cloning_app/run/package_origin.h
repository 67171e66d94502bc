#pragma once

#include <string>
#include <vector>

#include "cloning_app/package/manifest.h"
#include "cloning_app/run/result_table.h"

namespace vxclone {

/// What the package of a backup that begins now says of where it comes from, its results still missing.
/// Errors: the name is none (`BadArguments`), or the television does not say what it is (`IdentityUnusable`).
Result<PackageOrigin> originOfBackup(const std::string& name);

/// The rows of a backup as its package keeps them.
std::vector<ManifestResult> resultsOf(const std::vector<Row>& rows);

}  // namespace vxclone
