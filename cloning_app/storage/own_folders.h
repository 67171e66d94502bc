#pragma once

#include <filesystem>
#include <string>

#include "cloning_app/base/tree_walk.h"

namespace vxclone {

/// Whether the entry `name` of `parent` conflicts with vxclone's own folders: it is in the data folder (which
/// contains the clone folder and the safety backup) or below it, or is or contains one of these folders. The
/// entry need not exist. Folders are compared by device and inode, so other names through mounts or links are
/// recognised.
bool isOwnFolder(const Tree& parent, const std::string& name, const std::filesystem::path& dataFolder);

}  // namespace vxclone
