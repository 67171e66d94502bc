#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "cloning_app/support/archive.h"
#include "cloning_app/support/redactor.h"

namespace vxclone {

/// What a bundle is made of.
struct BundleSources {
    std::filesystem::path recordFolder;  ///< where the record of the last run lies
    std::string log;                     ///< a log file to add; empty for none
};

/// The files of a bundle: versions, what the television is, its last results, the record of its last run, the
/// log. What cannot be read says so in its place; everything has passed the redactor. Errors: the log that
/// was asked for cannot be read.
Result<std::vector<ArchiveEntry>> bundleFiles(const BundleSources& sources, const Redactor& redactor);

}  // namespace vxclone
