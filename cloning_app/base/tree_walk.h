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

/// The flags for opening a folder that somebody may replace by a link.
inline constexpr int kOpenFolder = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;

/// Limits that no package exceeds. A folder that exceeds them is refused: it is not a package, or was made to
/// do harm.
struct TreeLimits {
    std::size_t entries = 10'000;
    std::size_t depth = 8;  ///< the entries of the folder itself are at depth 1
    std::uint64_t fileBytes = std::uint64_t{4} << 30U;
    std::uint64_t totalBytes = std::uint64_t{8} << 30U;
    std::size_t nameBytes = 255;
};

/// A folder to read or to fill. The caller owns the descriptor.
struct Tree {
    int descriptor;
    std::string path;  ///< for sentences
    Place place;
};

/// Opens one of vxclone's own folders on the television. Errors: it cannot be opened.
Result<Descriptor> openOnTelevision(const std::filesystem::path& folder);

/// The current entry of a walk.
struct TreeEntry {
    const std::string& name;
    std::string path;  ///< for sentences
    std::uint64_t bytes;
};

/// The actions at each entry of a walk. The first failure ends the walk.
class TreeVisitor {
 public:
    virtual ~TreeVisitor() = default;
    /// A regular file, open for reading at its start. The walk owns the descriptor.
    virtual Result<void> file(const TreeEntry& entry, int descriptor) = 0;
    /// Called before and after the entries of a folder.
    virtual Result<void> enterFolder(const TreeEntry& entry) = 0;
    virtual Result<void> leaveFolder() = 0;
};

/// Whether desktop systems create files of this name on every stick. Such files are not part of a package.
bool isSidecar(std::string_view name);

/// Visits everything under the folder, sorted by name within each folder. Only regular files and folders of
/// one file system are accepted, and they are opened without following links. Sidecar files on a stick are
/// skipped. Errors: another kind of entry, an exceeded limit, a failed read, or the visitor's own error.
Result<void> walkTree(const Tree& tree, const TreeLimits& limits, TreeVisitor& visitor);

/// The names in the folder without "." and "..", sorted. Errors: more names than `most`.
Result<std::vector<std::string>> namesIn(const Tree& folder, std::size_t most);

/// Whether a call that failed for this reason (errno) shows that the entry does not exist. Any other reason
/// leaves that open.
bool meansAbsent(int reason);

/// Whether the folder has an entry of this name, of any kind. Error: it cannot be determined.
Result<bool> hasEntry(const Tree& folder, const std::string& name);

/// Removes the entry and everything below it, at any depth. Links are removed, not followed. A missing entry
/// counts as removed. Result: 0, or the system's reason (errno). EXDEV means that another file system is
/// mounted below it; if this was so from the beginning, nothing is removed.
int removeTree(int directory, const std::string& name);

/// Removes everything in the folder in the same way, but not the folder.
int removeContents(int directory);

/// Checks whether `removeTree` would meet another file system. Error: it would; the sentence says where.
Result<void> checkRemovable(const Tree& folder, const std::string& name);

/// The same for `removeContents`.
Result<void> checkContentsRemovable(const Tree& folder);

}  // namespace vxclone
