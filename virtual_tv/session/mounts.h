#pragma once

#include <filesystem>
#include <vector>

#include "virtual_tv/base/error.h"
#include "virtual_tv/session/entry_record.h"
#include "virtual_tv/session/stick.h"
#include "virtual_tv/store/folder.h"

namespace vxtv {

/// A directory of this machine that a session covers with one of the television's.
struct CoveredRoot {
    std::filesystem::path seenAs;    ///< where the session sees it, such as /opt
    std::filesystem::path inFolder;  ///< the television's directory of that name, relative to its folder
};

/// /opt, /tmp and /media; in addition what they really are on a machine on which one is a symbolic link.
const std::vector<CoveredRoot>& coveredRoots();

/// Whether `path` is strictly below `ancestor`. Both absolute and normal; the file system is not asked.
bool isBelow(const std::filesystem::path& path, const std::filesystem::path& ancestor);

/// The root that `path` lies strictly below, or null.
const CoveredRoot* coveringRoot(const std::filesystem::path& path);

/// Where what the session sees as `path` lies in the television, relative to its folder. Empty when `path`
/// is not below a covered root.
std::filesystem::path pathInFolder(const std::filesystem::path& path);

/// Which directories have to be mounted again at their own paths so that all of `needed` stay visible when
/// `covered` are mounted over. Sorted, a parent before what lies beside it; none lies below another, since a
/// directory brings all that is in it. A path that is itself one of `covered` is never in the result: a
/// television's /tmp is its own.
/// Paths are absolute and normal; the file system is not asked.
std::vector<std::filesystem::path> pathsToExpose(const std::vector<std::filesystem::path>& needed,
                                                 const std::vector<std::filesystem::path>& covered);

/// `path` as it was written and as it really is: either may be asked for inside.
std::vector<std::filesystem::path> bothNames(const std::filesystem::path& path);

/// The folder that holds this program's bin and lib folders: a build's or an installation's.
std::filesystem::path ownTree();

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
