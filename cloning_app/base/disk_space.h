#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "cloning_app/base/tree_copy.h"

namespace vxclone {

/// What a file system cannot hold.
struct FileSystemRules {
    std::uint64_t largestFile = 0;       ///< in bytes
    std::string_view refusedCharacters;  ///< besides control characters, which it also refuses
    std::string_view name;               ///< for sentences; empty if nothing is refused
};

/// The rules of the file system with this type number (`f_type` of statfs).
const FileSystemRules& rulesOf(long fileSystemType);

/// The rules of the open folder's file system.
const FileSystemRules& rulesAt(int directory);

/// The reason why the file system cannot hold the entry; empty if it can.
std::string problemWith(const FileSystemRules& rules, std::string_view name, std::uint64_t bytes);

/// Checks the entries of one tree, one after the other, for a file system with these rules.
class TreeJudge {
 public:
    /// The rules must outlive this object.
    explicit TreeJudge(const FileSystemRules& rules) : rules_(rules) {}

    /// The reason why the file system cannot hold the entry beside the previous ones; empty if it can.
    std::string problemWith(const TreeEntry& entry);

 private:
    const FileSystemRules& rules_;
    std::map<std::string, std::string> names_;  ///< the paths as such a system compares them
};

/// Checks that a package of this size and `besides` fit on the folder's disk, in bytes and in number of
/// entries, after `reclaimed` was freed. Errors: `StickFull` or `TelevisionFull`, with the package's size,
/// the needed and the free room.
Result<void> checkSpace(const Tree& folder, const TreeSize& package, const TreeSize& reclaimed = {},
                        const TreeSize& besides = {});

/// A number of things in words, such as "1 file" or "2 files".
std::string countText(std::uint64_t count, std::string_view thing);

/// A number of bytes in words, such as "1.4 MB".
std::string sizeText(std::uint64_t bytes);

/// The size of a package in words, such as "52 files, 1.4 MB".
std::string sizeText(const TreeSize& size);

}  // namespace vxclone
