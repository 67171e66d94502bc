#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

#include "cloning_app/base/tree_walk.h"

namespace vxclone {

/// The room for what the services of a television write while they load a safety backup, mostly journals. The
/// journal of a settings store takes 1.3 MB.
inline constexpr std::uint64_t kRoomForAnUndo = std::uint64_t{2} << 20U;

/// The application's data folder, which contains the clone folder. It holds the safety backup. A staged
/// package is kept here while the library backs up into the clone folder. Everything is on one file system,
/// so nothing is copied. Only the process with the current run uses it.
class SafetyStore {
 public:
    /// Errors: the folder cannot be read.
    static Result<SafetyStore> open(const std::filesystem::path& dataFolder);

    const std::string& path() const { return path_; }

    /// The safety backup, open for reading. The descriptor is invalid if there is none.
    Result<Descriptor> openSafety() const;

    /// Moves everything in the clone folder `root` aside, or back. Errors: a failure of the disk; entries
    /// that were moved stay at their new place.
    Result<void> setAside(const Tree& root) const;
    Result<void> bringBack(const Tree& root) const;

    /// Makes the package in the clone folder `root` the safety backup: flushes it and moves it as a whole
    /// over the previous one. After a failure or a power cut, the previous one is there.
    Result<void> keep(const Tree& root) const;

    /// Reserves `kRoomForAnUndo` on the disk, so that an undo has this room even if the disk is full by then.
    /// Has no effect if it is already reserved. Errors: the disk does not have that much room.
    Result<void> takeRoom() const;
    /// Frees the room that `takeRoom` reserved.
    void giveRoomBack() const;

 private:
    SafetyStore(Descriptor folder, std::string path) : folder_(std::move(folder)), path_(std::move(path)) {}
    Result<void> replace() const;

    Descriptor folder_;
    std::string path_;
};

/// The path of the safety backup, for sentences.
std::string safetyPathIn(const std::filesystem::path& dataFolder);

/// Removes leftovers of a dead run from the data folder. A safety backup that was about to be replaced is put
/// back. Leftovers that cannot be removed do no harm.
void removeLeftovers(const std::filesystem::path& dataFolder);

}  // namespace vxclone
