#pragma once

#include <filesystem>
#include <vector>

#include "virtual_tv/session/entry_record.h"
#include "virtual_tv/session/stick.h"
#include "virtual_tv/television/error.h"
#include "virtual_tv/television/folder.h"

namespace vxtv {

/// One directory to be seen at a second path.
struct Bind {
    std::filesystem::path source;
    std::filesystem::path target;
    bool readOnly = false;
};

/// A directory that a session wants to keep in sight.
struct Need {
    std::filesystem::path path;  ///< absolute, normal
    bool required = false;       ///< without it the session cannot work
};

/// The binds of a session, in the order in which they have to be done: the television's directories over
/// /opt, /tmp and /media, the sticks, and then what these cover but the session needs. Their mount points in
/// the television are made, and written down in the record.
/// A need that the television hides with a directory of its own is left out, or, when required, refused
/// (AlreadyExists) unless that directory is empty.
Result<std::vector<Bind>> prepareBinds(const Folder& folder, const std::vector<Stick>& sticks,
                                       const std::vector<Need>& needs, const EntryRecord& record);

/// Does the binds in the calling process' mount namespace. All sources are opened before the first bind is
/// done, so a bind may cover the source of a later one.
/// On failure (NoIsolation) the sentence names the two directories; what was mounted stays mounted.
Result<void> doBinds(const std::vector<Bind>& binds);

/// The same with empty directories in memory mounted first at `memoryRoots`; targets are made in them.
Result<void> doBindsOverMemory(const std::vector<std::filesystem::path>& memoryRoots,
                               const std::vector<Bind>& binds);

}  // namespace vxtv
