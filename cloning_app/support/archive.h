#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "cloning_app/base/errors.h"

namespace vxclone {

/// A file of an archive.
struct ArchiveEntry {
    std::string name;
    std::string content;
};

/// Makes a tar archive of the entries in memory, with the time `seconds` since the epoch. Errors: `Internal`.
Result<std::string> tarOf(const std::vector<ArchiveEntry>& entries, std::int64_t seconds);

/// Creates the file, which only its owner may read, and flushes it and its folder. On failure the file does
/// not exist. Errors: `FileExists`, and nothing was changed; a failure of the stick.
Result<void> writeNewFile(const std::string& path, const std::string& content);

}  // namespace vxclone
