#pragma once

#include <optional>
#include <string>
#include <vector>

#include "cloning_app/base/stop_flag.h"
#include "cloning_app/check/completeness.h"
#include "cloning_app/package/identity.h"
#include "cloning_app/package/manifest_file.h"
#include "cloning_app/report/finding.h"
#include "cloning_app/television/clone_engine.h"

namespace vxclone {

/// The results of the examination of a package.
struct Examination {
    std::vector<Check> checks;               ///< the seal's is the last
    std::optional<std::string> digest = {};  ///< of the manifest, if there is one
    std::vector<Lack> lacks = {};            ///< what the package lacks; a lack is no check that fails
    std::string name = {};                   ///< the name of the package; may be empty
};

/// Stores what is lacking in `lacks`, and adds a check for each contradiction between manifest and package.
void judgeCompleteness(const std::optional<ReadManifest>& manifest, const Holdings& holdings,
                       std::vector<Check>& checks, std::vector<Lack>& lacks);

/// The check about a package's manifest.
Check checkOf(const std::optional<ReadManifest>& manifest);

/// Checks whether the package fits this television and is unaltered since it was sealed. The library opens
/// identity and seal by name, so these are read from the clone folder `root`, where nobody can exchange them.
/// Everything else may be there, too, or on the stick, and is not copied. A package is good only if the
/// library's checks and our own agree; our own also find the details that the library does not report.
/// Result: one check for each subject and for each file that was changed. A negative check is not an error of
/// the function. Errors: the package or the disk cannot be read or written, the package has a later format,
/// the library failed, or `stop` was raised.
Result<Examination> examinePackage(CloneEngine& engine, const Tree& package, const Tree& root,
                                   const StopFlag& stop);

/// Compares the package's identity with the television's. Result: a check for each part.
std::vector<Check> compareIdentities(const Identity& television, const Identity& package);

/// Reads the identity file of a package. Result: empty if it does not exist. Errors: it cannot be read.
Result<std::optional<Identity>> readIdentity(const Tree& package);

/// The check for a package without an identity file: it is not complete.
Check missingIdentity();

/// Accepts another model if the values of both sides are known. Result: whether the model differed.
bool overrideModel(std::vector<Check>& checks);

}  // namespace vxclone
