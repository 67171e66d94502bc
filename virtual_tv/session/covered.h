#pragma once

#include <filesystem>
#include <vector>

#include "virtual_tv/television/folder.h"

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

}  // namespace vxtv
