#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "cloning_app/base/tree_walk.h"

namespace vxclone {

/// The folder in which the television mounts sticks.
inline constexpr std::string_view kSticks = "/media";

/// The place of an open folder according to the kernel.
struct FolderPlace {
    std::uint64_t device = 0;
    std::optional<std::uint64_t> mount =
        {};  ///< the number of its mount; empty if the kernel does not report it
};

/// A mount according to the kernel's list.
struct Mount {
    std::uint64_t number = 0;
    std::uint64_t device = 0;
    std::string root;   ///< the shown folder of its file system; "/" for all of it
    std::string point;  ///< the mount point
};

/// The queries to the kernel. Tests pass their own.
struct MountQuestions {
    /// Result: empty if it cannot be determined; errno has the reason.
    std::function<std::optional<FolderPlace>(int folder)> placeOf;
    /// The text of the kernel's list of mounts, as in /proc/self/mountinfo. Result: as above.
    std::function<std::optional<std::string>()> mounts;
};

/// The real queries.
MountQuestions realMountQuestions();

/// The kernel's list of mounts. Lines that cannot be understood are skipped.
std::vector<Mount> parseMounts(std::string_view text);

/// Whether a folder belongs to the television and not to a stick: it has the mount or the device of the clone
/// folder, or it is on a mount that is above the sticks. A mount below `kSticks` is a stick, unless it shows
/// the same files as the clone folder's mount.
bool isTelevisionsOwn(const FolderPlace& folder, const FolderPlace& cloneFolder,
                      const std::vector<Mount>& mounts);

/// The mount points of the plugged-in sticks, sorted.
std::vector<std::string> pluggedIn(const FolderPlace& cloneFolder, const std::vector<Mount>& mounts);

/// The place of a file or folder that the user wants to write.
struct WrittenPlace {
    Tree folder;              ///< the folder in which it is created
    std::string name;         ///< its name in sentences
    bool onThisDisk = false;  ///< the user allows it even on the television itself
};

/// Checks whether the place is on a stick. Only then may a message say that the stick can be removed. The
/// clone folder need not exist. Result: whether it is on a stick. Errors: it is not and the user did not
/// allow that (`StickMissing`, with the plugged-in sticks); it cannot be determined.
Result<bool> goesOntoAStick(const WrittenPlace& place, const std::filesystem::path& cloneRoot,
                            const MountQuestions& questions);

}  // namespace vxclone
