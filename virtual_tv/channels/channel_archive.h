#pragma once

#include <filesystem>

#include "virtual_tv/channels/channel_store.h"

namespace vxtv {

/// The files of a channel archive, in the directory that a caller names.
inline constexpr const char* kChannelArchiveFile = "tvs-chms.zip";
inline constexpr const char* kHotelListFile = "hotel-channels.backup";

/// Carries the channels of a television through a directory; docs/service-backups.md describes the files.
/// Errors common to all: those of ChannelStore and the file system's, NoSpace and Io. Threads and processes:
/// as ChannelStore.
class ChannelArchive {
 public:
    explicit ChannelArchive(ChannelStore store) : store_(store) {}

    /// Writes the archive of transponders and channels, whole or not at all, in place of one that is there.
    /// The directory is made when it is missing, its parent must be there.
    Result<void> exportMap(const std::filesystem::path& directory) const;

    /// The same with the hotel's channel list, a file of its own.
    Result<void> exportHotelList(const std::filesystem::path& directory) const;

    /// Puts what the directory holds in place of the television's channels, all of it or, after an error,
    /// nothing. A directory without a hotel list leaves the hotel list empty: the old one names channels that
    /// are gone. Errors: NoBackupFile, NotABackupFile, OtherVersion, OtherService, DamagedBackup, BadBackup.
    Result<void> import(const std::filesystem::path& directory);

 private:
    ChannelStore store_;
};

}  // namespace vxtv
