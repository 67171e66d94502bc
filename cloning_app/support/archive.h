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

/// The entries as a tar archive in memory, made at `seconds` since the epoch. Errors: `Internal`.
Result<std::string> tarOf(const std::vector<ArchiveEntry>& entries, std::int64_t seconds);

/// Makes the file, which only its owner may read, and flushes it and its folder. On failure there is no such
/// file. Errors: `FileExists`, and nothing was changed; the stick says no.
Result<void> writeNewFile(const std::string& path, const std::string& content);

}  // namespace vxclone
