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

/// What was found out about a package.
struct Examination {
    std::vector<Check> checks;               ///< the seal's comes last
    std::optional<std::string> digest = {};  ///< the manifest's, where there is one
    std::vector<Lack> lacks = {};            ///< what the package lacks; a lack is no check that fails
    std::string name = {};                   ///< what people call the package; may be empty
};

/// What is lacking goes into `lacks`, and a check is added for each contradiction between manifest and
/// package.
void judgeCompleteness(const std::optional<ReadManifest>& manifest, const Holdings& holdings,
                       std::vector<Check>& checks, std::vector<Lack>& lacks);

/// What is to be said of a package's manifest.
Check checkOf(const std::optional<ReadManifest>& manifest);

/// Finds out whether the package fits this television and is as it was sealed. What the library opens by a
/// name and reads for what it is, the identity and the seal, it finds in the clone folder `root`, where
/// nobody exchanges it; all else may lie there, too, or on the stick, and is not copied. The judgement is the
/// library's; what it does not tell is found out here, and a package is good only when both say so. Result:
/// one check for each subject, and for each file that is not as it was; none of them stands for an error in
/// the sense of a failed examination. Errors: the package or the disk cannot be read or written, it is of a
/// later format, the library broke off, or `stop` was raised.
Result<Examination> examinePackage(CloneEngine& engine, const Tree& package, const Tree& root,
                                   const StopFlag& stop);

/// Compares what a package says of its television with what this one says: a check for each part.
std::vector<Check> compareIdentities(const Identity& television, const Identity& package);

/// Reads the identity file of a package. Result: none when there is none. Errors: it cannot be read.
Result<std::optional<Identity>> readIdentity(const Tree& package);

/// What a package without an identity file is: not complete.
Check missingIdentity();

/// Lets a difference of the model pass, where the values of both sides are known. Result: whether there was
/// one.
bool overrideModel(std::vector<Check>& checks);

}  // namespace vxclone
