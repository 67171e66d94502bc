#pragma once

#include <fcntl.h>
#include <sys/stat.h>

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "cloning_app/base/errors.h"
#include "common/descriptor.h"

namespace vxclone {

using vxcommon::Descriptor;

/// How a folder is opened that somebody may exchange for a link.
inline constexpr int kOpenFolder = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;

/// What no package exceeds. A folder that does is refused: it is not a package or was made to harm.
struct TreeLimits {
    std::size_t entries = 10'000;
    std::size_t depth = 8;  ///< the entries of the folder itself are at depth 1
    std::uint64_t fileBytes = std::uint64_t{4} << 30U;
    std::uint64_t totalBytes = std::uint64_t{8} << 30U;
    std::size_t nameBytes = 255;
};

/// A folder to read or fill: its descriptor stays the caller's.
struct Tree {
    int descriptor;
    std::string path;  ///< for sentences
    Place place;
};

/// Opens a folder of vxclone's own on the television. Errors: it cannot be opened.
Result<Descriptor> openOnTelevision(const std::filesystem::path& folder);

/// An entry that the walk has come to.
struct TreeEntry {
    const std::string& name;
    std::string path;  ///< for sentences
    std::uint64_t bytes;
};

/// What is done at each entry of a walk. The first failure ends the walk.
class TreeVisitor {
 public:
    virtual ~TreeVisitor() = default;
    /// A regular file, open for reading at its start; the descriptor stays the walk's.
    virtual Result<void> file(const TreeEntry& entry, int descriptor) = 0;
    /// Before and after the entries of a folder.
    virtual Result<void> enterFolder(const TreeEntry& entry) = 0;
    virtual Result<void> leaveFolder() = 0;
};

/// Whether it is a file that a desktop system leaves on every stick: it is no part of what was put there.
bool isSidecar(std::string_view name);

/// Visits everything under the folder, sorted by name within each folder. Only regular files and folders of
/// one file system are let through, opened without following links; sidecar files of a stick are passed over.
/// Errors: anything else in the tree, a limit exceeded, a read that failed, or the visitor's own.
Result<void> walkTree(const Tree& tree, const TreeLimits& limits, TreeVisitor& visitor);

/// The names in the folder without "." and "..", sorted. Errors: more names than `most`.
Result<std::vector<std::string>> namesIn(const Tree& folder, std::size_t most);

/// Whether a call that ended for this reason (errno) says that there is no such entry; any other tells
/// nothing.
bool meansAbsent(int reason);

/// Whether the folder has an entry of this name, of whatever kind. Error: nobody can tell.
Result<bool> hasEntry(const Tree& folder, const std::string& name);

/// Removes the entry and everything under it, however deep; links are removed, not followed. An entry that is
/// not there counts as removed. Result: 0, or the system's reason (errno). EXDEV: another file system is
/// mounted under it; where that was so from the beginning, nothing is removed.
int removeTree(int directory, const std::string& name);

/// Removes everything in the folder, not the folder, in the same way.
int removeContents(int directory);

/// Whether `removeTree` would meet another file system. Error: it would; the sentence names where.
Result<void> checkRemovable(const Tree& folder, const std::string& name);

/// The same for `removeContents`.
Result<void> checkContentsRemovable(const Tree& folder);

}  // namespace vxclone
