#pragma once

#include <filesystem>
#include <vector>

#include "virtual_tv/base/error.h"
#include "virtual_tv/session/entry_record.h"
#include "virtual_tv/session/stick.h"
#include "virtual_tv/store/folder.h"

namespace vxtv {

/// A directory of this machine over which a session mounts one of the television's.
struct CoveredRoot {
    std::filesystem::path seenAs;    ///< its path in the session, such as /opt
    std::filesystem::path inFolder;  ///< the television's directory of that name, relative to its folder
};

/// /opt, /tmp and /media. If one of them is a symbolic link on this machine, also its target.
const std::vector<CoveredRoot>& coveredRoots();

/// Whether `path` is strictly below `ancestor`. Both are absolute and normal; the file system is not
/// accessed.
bool isBelow(const std::filesystem::path& path, const std::filesystem::path& ancestor);

/// The root that `path` is strictly below, or null.
const CoveredRoot* coveringRoot(const std::filesystem::path& path);

/// The place in the television, relative to its folder, of the path that the session sees as `path`. Empty if
/// `path` is not below a covered root.
std::filesystem::path pathInFolder(const std::filesystem::path& path);

/// The directories that must be mounted again at their own paths, so that all of `needed` stay visible when
/// `covered` are mounted over. Sorted, with parents first. None is below another, because a directory
/// contains everything below it. A path in `covered` is never in the result: a television has its own /tmp.
/// Paths are absolute and normal; the file system is not accessed.
std::vector<std::filesystem::path> pathsToExpose(const std::vector<std::filesystem::path>& needed,
                                                 const std::vector<std::filesystem::path>& covered);

/// `path` as it was written and with links resolved, because programs may use either.
std::vector<std::filesystem::path> bothNames(const std::filesystem::path& path);

/// The folder that holds this program's bin and lib folders: a build's or an installation's.
std::filesystem::path ownTree();

/// A directory that is made visible at a second path.
struct Bind {
    std::filesystem::path source;
    std::filesystem::path target;
    bool readOnly = false;
};

/// A directory that must stay visible in a session.
struct Need {
    std::filesystem::path path;  ///< absolute, normal
    bool required = false;       ///< without it the session cannot work
};

/// The binds of a session in the order in which they must be done: first the television's directories over
/// /opt, /tmp and /media, then the sticks, then directories that these cover but the session needs. Their
/// mount points in the television are created and recorded. If the television has a directory of its own at
/// the path of a need, the need is left out. If it is required and that directory is not empty, the session
/// is refused (AlreadyExists).
Result<std::vector<Bind>> prepareBinds(const Folder& folder, const std::vector<Stick>& sticks,
                                       const std::vector<Need>& needs, const EntryRecord& record);

/// Does the binds in the calling process's mount namespace. All sources are opened before the first bind is
/// done, so a bind may cover the source of a later one. On failure (NoIsolation) the sentence names the two
/// directories, and earlier mounts stay.
Result<void> doBinds(const std::vector<Bind>& binds);

/// The same, but first mounts empty directories in memory at `memoryRoots`. Targets are created in them.
Result<void> doBindsOverMemory(const std::vector<std::filesystem::path>& memoryRoots,
                               const std::vector<Bind>& binds);

}  // namespace vxtv
