#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "cloning_app/base/tree_copy.h"

namespace vxclone {

/// What the file system under a folder refuses to hold.
struct FileSystemRules {
    std::uint64_t largestFile = 0;       ///< in bytes
    std::string_view refusedCharacters;  ///< besides control characters, which such a system refuses too
    std::string_view name;               ///< for sentences; empty where nothing is refused
};

/// The rules of the file system with this type number (`f_type` of statfs).
const FileSystemRules& rulesOf(long fileSystemType);

/// The rules of the file system that the open folder lies on.
const FileSystemRules& rulesAt(int directory);

/// Why the file system cannot hold the entry; empty when it can.
std::string problemWith(const FileSystemRules& rules, std::string_view name, std::uint64_t bytes);

/// Judges the entries of one tree, one after the other, for a file system with these rules.
class TreeJudge {
 public:
    /// The rules must outlive this object.
    explicit TreeJudge(const FileSystemRules& rules) : rules_(rules) {}

    /// Why the file system cannot hold the entry beside those before; empty when it can.
    std::string problemWith(const TreeEntry& entry);

 private:
    const FileSystemRules& rules_;
    std::map<std::string, std::string> names_;  ///< of the paths as such a system sees them
};

/// Checks that a package of this size and `besides` fit where the folder lies, in bytes and in files and
/// folders, `reclaimed` being freed before. Errors: `StickFull` or `TelevisionFull`, naming the package's
/// size, what it needs and what there is.
Result<void> checkSpace(const Tree& folder, const TreeSize& package, const TreeSize& reclaimed = {},
                        const TreeSize& besides = {});

/// A number of things for a person, such as "1 file" or "2 files".
std::string countText(std::uint64_t count, std::string_view thing);

/// A number of bytes for a person, such as "1.4 MB".
std::string sizeText(std::uint64_t bytes);

/// How large a package is, for a person, such as "52 files, 1.4 MB".
std::string sizeText(const TreeSize& size);

}  // namespace vxclone
