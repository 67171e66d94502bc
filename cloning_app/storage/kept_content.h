#pragma once

#include <filesystem>

#include "cloning_app/base/tree_copy.h"

namespace vxclone {

// Moves the content of the clone folder aside into the data folder while the clone folder is used for a look
// at the television that must leave no trace. Both are on one file system, so nothing is copied. Only the
// process that has the television locked may call these functions. If a process dies at any point,
// `putContentBack` restores the content.

/// Moves everything in the clone folder `root` aside. Content that an earlier caller left aside is put back
/// first. Errors: a failure of the disk; everything is where it was, as far as the disk allows.
Result<void> setContentAside(const std::filesystem::path& dataFolder, const Tree& root);

/// Puts the content back and replaces the current content of the clone folder `root`. Result: whether
/// anything was set aside. Errors: a failure of the disk; the rest stays aside.
Result<bool> putContentBack(const std::filesystem::path& dataFolder, const Tree& root);

/// Whether anything is set aside. Error: it cannot be determined.
Result<bool> isContentAside(const std::filesystem::path& dataFolder);

/// The size of the content that was set aside; 0 if it cannot be determined.
TreeSize sizeOfContentAside(const std::filesystem::path& dataFolder);

}  // namespace vxclone
