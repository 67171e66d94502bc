#pragma once

#include <string>
#include <vector>

#include "cloning_app/package/tree_walk.h"

namespace vxclone {

/// What a package holds, as its seal sees it: everything but the seal itself and the sidecar files of a
/// stick. Both sides of the seal must see the same, so both get it from here.
struct PackageContents {
    std::vector<std::string>
        files;         ///< the regular files' full paths, sorted, the list of contents among them
    std::string list;  ///< what that list has to say of all others
};

/// Reads the package. The library's hash knows neither names nor empty files, nor where one file ends and
/// the next begins; the list names every entry with its size and digest, and is itself under the seal.
/// Errors: those of `walkTree`.
Result<PackageContents> readContents(const Tree& package);

/// The names of entries that one of two lists has and the other has not, or has otherwise; each once, sorted.
std::vector<std::string> differingEntries(const std::string& one, const std::string& other);

}  // namespace vxclone
