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

/// Where the television mounts the sticks that are plugged in.
inline constexpr std::string_view kSticks = "/media";

/// Where an open folder lies, as the kernel tells it.
struct FolderPlace {
    std::uint64_t device = 0;
    std::optional<std::uint64_t> mount =
        {};  ///< the number of its mount; none where the kernel does not tell
};

/// A mount, as the kernel lists it.
struct Mount {
    std::uint64_t number = 0;
    std::uint64_t device = 0;
    std::string root;   ///< the folder of its file system that it shows; "/" for the whole of it
    std::string point;  ///< where it is seen
};

/// What is asked of the kernel: a caller that wants other answers hands in its own.
struct MountQuestions {
    /// Result: none when it cannot be told, and errno says why.
    std::function<std::optional<FolderPlace>(int folder)> placeOf;
    /// The text of the kernel's list of mounts, as in /proc/self/mountinfo. Result: as above.
    std::function<std::optional<std::string>()> mounts;
};

/// The real ones.
MountQuestions realMountQuestions();

/// The kernel's list of mounts. A line that cannot be understood is passed over.
std::vector<Mount> parseMounts(std::string_view text);

/// Whether a folder there is the television's own and no stick's: it has the mount or the device of the
/// clone folder, or a mount that sticks are mounted below. A mount below `kSticks` is a stick, unless it
/// shows again what the clone folder's mount shows.
bool isTelevisionsOwn(const FolderPlace& folder, const FolderPlace& cloneFolder,
                      const std::vector<Mount>& mounts);

/// Where the sticks that are plugged in are mounted, sorted.
std::vector<std::string> pluggedIn(const FolderPlace& cloneFolder, const std::vector<Mount>& mounts);

/// Where something that the user named is to be written.
struct WrittenPlace {
    Tree folder;              ///< in which it is to be made
    std::string name;         ///< as it is called in sentences
    bool onThisDisk = false;  ///< the user wants it even where that is the television itself
};

/// Finds out whether what is written there goes onto a stick, for whoever may say that it can be removed. The
/// clone folder need not exist. Result: whether it does. Errors: it does not, and nobody asked for that
/// (`StickMissing`, the sentence names the sticks that are plugged in); it cannot be told.
Result<bool> goesOntoAStick(const WrittenPlace& place, const std::filesystem::path& cloneRoot,
                            const MountQuestions& questions);

}  // namespace vxclone
