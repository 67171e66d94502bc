#pragma once

#include <filesystem>
#include <vector>

namespace vxtv {

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

}  // namespace vxtv
