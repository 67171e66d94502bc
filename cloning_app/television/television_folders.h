#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "cloning_app/base/errors.h"
#include "cloning_app/base/tree_walk.h"

namespace vxclone {

/// Whether the library stays within the television's own folders. It copies the home menu through whatever
/// link stands there, waits for ever at a pipe, and empties the clone folder and the logos' folders with
/// whatever is mounted there. So nothing of that may be there before it is let loose.
///
/// Error: `UnsafeTelevision`, with the name of what is in the way.
Result<void> checkSafe(const std::filesystem::path& cloneRoot);

/// The folders in the home menu, sorted: the library carries the files that lie directly in it alone.
Result<std::vector<std::string>> homeMenuFoldersLeftOut();

/// Opens a folder that the platform names, for reading. Result: none when the television has no such folder.
/// Errors: the platform named none, which says nothing about what is there, or the folder cannot be opened.
Result<Descriptor> openTelevisionFolder(const std::string& path);

}  // namespace vxclone
