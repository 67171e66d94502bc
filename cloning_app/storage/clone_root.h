#pragma once

#include <filesystem>

#include "cloning_app/base/tree_copy.h"

namespace vxclone {

/// The package on the television: the folder that the library writes to and reads from. While this object
/// exists, no other vxclone works on it, and applications of other users can access it. The destructor makes
/// the folder accessible only for its owner, because its content includes secrets.
class CloneRoot {
 public:
    /// Creates the folder and its missing parents, and locks it for this process. Errors: `TelevisionBusy`,
    /// or a failure of the television's disk.
    static Result<CloneRoot> open(const std::filesystem::path& path);

    CloneRoot(CloneRoot&&) = default;
    CloneRoot& operator=(CloneRoot&&) = delete;
    CloneRoot(const CloneRoot&) = delete;
    CloneRoot& operator=(const CloneRoot&) = delete;
    ~CloneRoot();

    Tree tree() const { return {folder_.get(), path_, Place::Television}; }

    /// Replaces the content by the package `from`, if the disk also has room for `reserve`. `tell` receives
    /// the progress. On failure, or when `stop` is raised, the folder is empty.
    Result<TreeSize> fillFrom(const Tree& from, const TreeLimits& limits, const StopFlag& stop,
                              const TreeSize& reserve = {}, const TellWritten& tell = {});

    /// Replaces the content by hard links to the files of the package `from`, which needs no room. So nobody
    /// may write into these files. On failure the folder is empty.
    Result<void> fillWithLinksTo(const Tree& from, const TreeLimits& limits);

    /// Removes everything in the folder.
    Result<void> empty();

 private:
    CloneRoot(Descriptor folder, std::string path);

    Descriptor folder_;
    std::string path_;
};

}  // namespace vxclone
