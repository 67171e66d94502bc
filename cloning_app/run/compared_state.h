#pragma once

#include <string>
#include <vector>

#include "cloning_app/run/comparison.h"

namespace vxclone {

/// What is compared of a package: its settings one by one, its other files by their content. Errors: it
/// cannot be read, or its settings file is damaged.
Result<ComparedState> stateOfPackage(const Tree& package);

/// What this television holds of the things in `package` that can be seen without a run: the settings, and
/// the files of its pictures and of its home menu. What cannot be seen, or is not in the package, is taken
/// out of `package`. Errors: the television's disk cannot be read.
Result<ComparedState> stateOfTelevision(ComparedState& package);

/// The files directly in this television's home menu that the package in `root` does not hold as they are, by
/// their paths in the package. Errors: the television does not say where its home menu is, or it cannot be
/// read.
Result<std::vector<std::string>> homeMenuFilesNotIn(const Tree& root);

/// The names of the categories that `stateOfTelevision` sees of such a package.
std::vector<std::string> categoriesSeen(const ComparedState& package);

}  // namespace vxclone
