#pragma once

#include <string>
#include <vector>

#include "cloning_app/package/package_contents.h"
#include "cloning_app/report/comparison.h"
#include "cloning_app/television/category.h"

namespace vxclone {

/// The parts of a package that are compared: its settings one by one, its other files by content. Errors: it
/// cannot be read, or its settings file is damaged.
Result<ComparedState> stateOfPackage(const Tree& package);

/// All files of a package, or of what the library saved, except its settings file, sorted by path. Errors: it
/// cannot be read.
Result<std::vector<PackageEntry>> filesOf(const Tree& package);

/// The files directly in this television's home menu that the package in `root` lacks or holds with other
/// content, by their paths in the package. Errors: the television does not name its home menu folder, or the
/// folder cannot be read.
Result<std::vector<std::string>> homeMenuFilesNotIn(const Tree& root);

/// The cloned files of a category that has a folder on the television, so that they can be compared without a
/// run. These are the files directly in the folder, with their paths in a package, sorted by path. Empty if
/// the television has no such folder. Errors: the television does not name the folder, or its disk cannot be
/// read.
Result<std::vector<PackageEntry>> filesOfTelevision(const Category& category);

/// The files that a restore of the package adds to this television's home menu. The library never removes
/// such files, so an undo must do it. Errors: the package or the home menu cannot be read.
Result<std::vector<PackageEntry>> filesAddedBy(const Tree& package);

/// Removes those of the files from this television's home menu that still have the content of the package.
/// Result: the number of removed files. Errors: the home menu cannot be read, or a file cannot be removed.
Result<std::size_t> removeAdded(const std::vector<PackageEntry>& added);

}  // namespace vxclone
