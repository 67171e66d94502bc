#pragma once

#include <string>
#include <vector>

#include "cloning_app/package/package_contents.h"

namespace vxclone {

/// The files that a restore of the package puts into this television's home menu beside its own: the library
/// takes none away. An undo has to. Errors: the package or the home menu cannot be read.
Result<std::vector<PackageEntry>> filesAddedBy(const Tree& package);

/// Takes those of the files out of this television's home menu that are there with the content that the
/// package gave them. Result: how many. Errors: the home menu cannot be read, or a file not be removed.
Result<std::size_t> removeAdded(const std::vector<PackageEntry>& added);

}  // namespace vxclone
