#pragma once

#include <filesystem>
#include <vector>

#include "virtual_tv/base/descriptor.h"
#include "virtual_tv/base/error.h"
#include "virtual_tv/store/folder.h"

namespace vxtv {

/// What sessions put into a television's folder and take out again: empty directories to mount on, and links.
/// Each is written down in the television's run folder before it is made, so that whichever session is the
/// last, or the first one after a crash, can remove them all and nothing else.
///
/// Paths are relative to the television's folder. No link in the folder is ever followed: what runs in a
/// television may have put it there. Safe for several processes; `removeAll` needs the session lock alone.
class EntryRecord {
 public:
    explicit EntryRecord(Folder folder) : folder_(std::move(folder)) {}

    /// Makes the directory and those above it that are missing. What exists is left alone and not recorded.
    /// On failure (Io) the sentence names what is in the way; what was made so far stays recorded.
    Result<void> makeDirectory(const std::filesystem::path& path) const;

    /// Makes a symbolic link in a directory that exists. Fails (AlreadyExists, Io) as `makeDirectory`.
    Result<void> makeLink(const std::filesystem::path& path, const std::filesystem::path& target) const;

    /// Whether some session made `path`.
    bool holds(const std::filesystem::path& path) const;

    /// Removes every recorded link and every recorded directory that is empty, then the record. An entry that
    /// is gone, or that the television has filled meanwhile, is passed over.
    void removeAll() const;

 private:
    std::filesystem::path file() const { return folder_.run() / "session.entries"; }
    std::vector<std::filesystem::path> entries() const;
    bool add(const std::filesystem::path& path) const;
    Descriptor openDirectory(const std::filesystem::path& path) const;

    Folder folder_;
};

}  // namespace vxtv
