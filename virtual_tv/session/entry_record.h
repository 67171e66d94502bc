#pragma once

#include <filesystem>
#include <vector>

#include "virtual_tv/base/descriptor.h"
#include "virtual_tv/base/error.h"
#include "virtual_tv/store/folder.h"

namespace vxtv {

/// The entries that sessions temporarily create in a television's folder: empty directories as mount points,
/// and links. Each is recorded in the television's run folder before it is created. So the last session, or
/// the first one after a crash, can remove all of them and nothing else.
///
/// Paths are relative to the television's folder. Links in the folder are never followed, because programs in
/// the television may have created them. Safe for several processes; `removeAll` requires the exclusive
/// session lock.
class EntryRecord {
 public:
    explicit EntryRecord(Folder folder) : folder_(std::move(folder)) {}

    /// Creates the directory and its missing parents. Existing ones are not changed and not recorded. On
    /// failure (Io) the sentence names the obstacle; directories that were created stay recorded.
    Result<void> makeDirectory(const std::filesystem::path& path) const;

    /// Creates a symbolic link in an existing directory. Fails (AlreadyExists, Io) as `makeDirectory`.
    Result<void> makeLink(const std::filesystem::path& path, const std::filesystem::path& target) const;

    /// Whether a session created `path`.
    bool holds(const std::filesystem::path& path) const;

    /// Removes every recorded link and every recorded directory that is empty, then the record. Entries that
    /// do not exist any more, or that the television has filled meanwhile, are skipped.
    void removeAll() const;

 private:
    std::filesystem::path file() const { return folder_.run() / "session.entries"; }
    std::vector<std::filesystem::path> entries() const;
    bool add(const std::filesystem::path& path) const;
    Descriptor openDirectory(const std::filesystem::path& path) const;

    Folder folder_;
};

}  // namespace vxtv
