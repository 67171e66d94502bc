#pragma once

#include <filesystem>

#include "cloning_app/base/tree_copy.h"

namespace vxclone {

/// The television's side of a package: the folder that the library writes to and reads from. While this
/// object lives, no other vxclone works on it, and applications of other users may look into it. Its end
/// closes the folder to all but its owner: what stays there opens the television.
class CloneRoot {
 public:
    /// Makes the folder and the folders above it where they are missing, and takes it for this process.
    /// Errors: `TelevisionBusy`, or the television's disk says no.
    static Result<CloneRoot> open(const std::filesystem::path& path);

    CloneRoot(CloneRoot&&) = default;
    CloneRoot& operator=(CloneRoot&&) = delete;
    CloneRoot(const CloneRoot&) = delete;
    CloneRoot& operator=(const CloneRoot&) = delete;
    ~CloneRoot();

    Tree tree() const { return {folder_.get(), path_, Place::Television}; }

    /// Replaces what is there by the package `from`, where the disk has room for `reserve` besides; `tell`
    /// hears how much of it is there. On failure, or once `stop` is raised, the folder is left empty.
    Result<TreeSize> fillFrom(const Tree& from, const TreeLimits& limits, const StopFlag& stop,
                              const TreeSize& reserve = {}, const TellWritten& tell = {});

    /// Replaces what is there by the package `from`, which takes no room: its files are those of `from`,
    /// under a second name, so nobody may write into them. On failure the folder is left empty.
    Result<void> fillWithLinksTo(const Tree& from, const TreeLimits& limits);

    /// Removes everything in the folder.
    Result<void> empty();

 private:
    CloneRoot(Descriptor folder, std::string path);

    Descriptor folder_;
    std::string path_;
};

}  // namespace vxclone
