#pragma once

#include <vector>

#include "cloning_app/base/tree_copy.h"
#include "cloning_app/report/result_table.h"

namespace vxclone {

/// Puts the television's boot logo and set-top-box logo into the package in `root`: a backup of the library
/// leaves them out, and its restore of a package without a boot logo removes the television's own. A folder
/// that the television does not have is not put in. Result: one row each; what failed is not in the package.
std::vector<Row> saveLogos(const Tree& root, const StopFlag& stop);

/// Whether this television has a logo of its own, of this category of the two. True where nobody can tell.
bool hasLogo(VXClone category);

/// Removes the folder of the logo if it is empty: the library leaves it so where a package holds an empty
/// one.
void removeEmptyLogo(VXClone category);

}  // namespace vxclone
