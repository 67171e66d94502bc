#pragma once

#include <functional>
#include <string>

#include "cloning_app/package/manifest.h"
#include "cloning_app/package/package_key.h"
#include "cloning_app/run/clone_run.h"

namespace vxclone {

/// What is needed to complete a backup to a package, asked before anything is made.
struct Means {
    PackageKey key;
    PackageOrigin origin;
    /// Whether it is no fault that the package lacks this.
    std::function<bool(const Lack&)> mayLack = [](const Lack&) { return false; };
};

/// What a backup that begins now needs of the television, beside the library's own work; `name` is what
/// people call the package. Errors: those of `requireKeys` and `originOfBackup`.
Result<Means> readyToSeal(CloneEngine& engine, const std::string& name);

/// Makes a package of the backup that the library left in `root` and reported in `results`: the logos are
/// added, what it lacks is found out, the manifest and the seal are made. The view is told what the library
/// does not report. Result: the report, without closing sentences; a lack that may not be is a failure of its
/// category. Errors: the backup left no good settings file, or it cannot be sealed.
Result<Report> completePackage(const CloneContext& context, const Tree& root, const ResultList& results,
                               const Means& means);

}  // namespace vxclone
