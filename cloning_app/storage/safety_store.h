#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

#include "cloning_app/base/tree_walk.h"

namespace vxclone {

/// What the services of a television write on its disk while they load a safety backup: journals, mostly.
/// That of a settings store takes 1.3 MB.
inline constexpr std::uint64_t kRoomForAnUndo = std::uint64_t{2} << 20U;

/// The application's data folder, beside the clone folder: where the safety backup lies, and where a package
/// waits that was staged while the library backs up into the clone folder. All on one file system, so that
/// nothing is copied. The holder of the television's run alone uses it.
class SafetyStore {
 public:
    /// Errors: the folder cannot be read.
    static Result<SafetyStore> open(const std::filesystem::path& dataFolder);

    const std::string& path() const { return path_; }

    /// The safety backup, open for reading; the descriptor is invalid when there is none.
    Result<Descriptor> openSafety() const;

    /// Moves everything in the clone folder `root` aside, and back. Errors: the disk says no; what has been
    /// moved stays where it is.
    Result<void> setAside(const Tree& root) const;
    Result<void> bringBack(const Tree& root) const;

    /// Makes the package in the clone folder `root` the safety backup, in place of the one before: the
    /// package is flushed and moved as a whole. On failure, also after a power cut, the one before is there.
    Result<void> keep(const Tree& root) const;

    /// Takes `kRoomForAnUndo` of the disk, so that an undo has it where the disk is full by then. Has no
    /// effect where it is taken already. Errors: the disk has not that much room.
    Result<void> takeRoom() const;
    /// Gives back what `takeRoom` took.
    void giveRoomBack() const;

 private:
    SafetyStore(Descriptor folder, std::string path) : folder_(std::move(folder)), path_(std::move(path)) {}
    Result<void> replace() const;

    Descriptor folder_;
    std::string path_;
};

/// Where the safety backup lies, for sentences.
std::string safetyPathIn(const std::filesystem::path& dataFolder);

/// Removes what a run that died left in the data folder; a safety backup that it was about to replace is put
/// back. What cannot be removed does no harm.
void removeLeftovers(const std::filesystem::path& dataFolder);

}  // namespace vxclone
