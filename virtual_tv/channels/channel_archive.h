#pragma once

#include <filesystem>

#include "virtual_tv/channels/channel_store.h"

namespace vxtv {

/// The files of a channel archive, in the directory that the caller passes.
inline constexpr const char* kChannelArchiveFile = "tvs-chms.zip";
inline constexpr const char* kHotelListFile = "hotel-channels.backup";

/// Saves the channels of a television to a directory and loads them; docs/service-backups.md describes the
/// files. Errors common to all: those of ChannelStore, NoSpace and Io. Threads and processes: as
/// ChannelStore.
class ChannelArchive {
 public:
    explicit ChannelArchive(ChannelStore store) : store_(store) {}

    /// Writes the archive of transponders and channels, completely or not at all, and replaces an existing
    /// one. A missing directory is created if its parent exists.
    Result<void> exportMap(const std::filesystem::path& directory) const;

    /// The same for the hotel's channel list, which has a file of its own.
    Result<void> exportHotelList(const std::filesystem::path& directory) const;

    /// Replaces the television's channels by those in the directory: all of them or, after an error, none.
    /// Without a hotel list in the directory the hotel list becomes empty, because the old one names channels
    /// that do not exist any more. Errors: NoBackupFile, NotABackupFile, OtherVersion, OtherService,
    /// DamagedBackup, BadBackup.
    Result<void> import(const std::filesystem::path& directory);

 private:
    ChannelStore store_;
};

}  // namespace vxtv
