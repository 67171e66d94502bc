#pragma once

#include <string>
#include <vector>

#include "cloning_app/package/package_contents.h"
#include "cloning_app/report/comparison.h"
#include "include/vx_clone_api.h"

namespace vxclone {

/// What is compared of a package: its settings one by one, its other files by their content. Errors: it
/// cannot be read, or its settings file is damaged.
Result<ComparedState> stateOfPackage(const Tree& package);

/// All files of a package, or of what the library saved, but its settings file; sorted by their paths.
/// Errors: it cannot be read.
Result<std::vector<PackageEntry>> filesOf(const Tree& package);

/// The files directly in this television's home menu that the package in `root` does not hold as they are, by
/// their paths in the package. Errors: the television does not say where its home menu is, or it cannot be
/// read.
Result<std::vector<std::string>> homeMenuFilesNotIn(const Tree& root);

/// Whether a category is files that lie in a folder of the television's own, so that no run is needed to see
/// them: the pictures and the home menu.
bool isFolderOfTelevision(VXClone category);

/// The files that travel of such a category, those directly in the folder, with the paths that they have in a
/// package, sorted by these; none where the television has no such folder. Errors: the television does not
/// say where the folder is, or its disk cannot be read.
Result<std::vector<PackageEntry>> filesOfTelevision(VXClone category);

/// The files that a restore of the package puts into this television's home menu beside its own: the library
/// takes none away. An undo has to. Errors: the package or the home menu cannot be read.
Result<std::vector<PackageEntry>> filesAddedBy(const Tree& package);

/// Takes those of the files out of this television's home menu that are there with the content that the
/// package gave them. Result: how many. Errors: the home menu cannot be read, or a file not be removed.
Result<std::size_t> removeAdded(const std::vector<PackageEntry>& added);

}  // namespace vxclone
