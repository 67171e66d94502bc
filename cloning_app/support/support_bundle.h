#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "cloning_app/support/archive.h"
#include "cloning_app/support/redactor.h"

namespace vxclone {

/// The sources of a bundle.
struct BundleSources {
    std::filesystem::path recordFolder;  ///< the folder with the record of the last run
    std::string log;                     ///< a log file to add; empty for none
};

/// The files of a bundle: versions, identity of the television, its last results, the record of its last run,
/// the log. A file that cannot be read contains the reason instead. All texts have passed the redactor.
/// Errors: the requested log cannot be read.
Result<std::vector<ArchiveEntry>> bundleFiles(const BundleSources& sources, const Redactor& redactor);

}  // namespace vxclone
