#pragma once

#include <filesystem>
#include <string>

#include "cloning_app/base/tree_walk.h"

namespace vxclone {

/// Whether the entry `name` of `parent`, which need not exist, lies in the data folder, which holds the clone
/// folder and the safety backup, or in a folder there, or is or holds one of them. Folders are compared by
/// device and inode, so that a mount or a link of another name makes no difference.
bool isOwnFolder(const Tree& parent, const std::string& name, const std::filesystem::path& dataFolder);

}  // namespace vxclone
