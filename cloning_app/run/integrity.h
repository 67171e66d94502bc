#pragma once

#include <optional>
#include <string>
#include <vector>

#include "cloning_app/package/manifest_file.h"
#include "cloning_app/run/check.h"
#include "cloning_app/run/clone_engine.h"

namespace vxclone {

/// What was found out about a package.
struct Examination {
    std::vector<Check> checks;               ///< the seal's comes last
    std::optional<std::string> digest = {};  ///< the manifest's, where there is one
};

/// What is to be said of a package's manifest.
Check checkOf(const std::optional<ReadManifest>& manifest);

/// Finds out whether the package in the clone folder `package` fits this television and is as it was sealed.
/// The judgement is the library's; what it does not tell is found out here, and a package is good only when
/// both say so. Result: one check for each subject, and for each file that is not as it was; none of them
/// stands for an error in the sense of a failed examination. Errors: the package or the disk cannot be read
/// or written, it is of a later format, or the library broke off.
Result<Examination> examinePackage(CloneEngine& engine, const Tree& package);

}  // namespace vxclone
