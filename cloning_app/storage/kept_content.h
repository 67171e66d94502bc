#pragma once

#include <filesystem>

#include "cloning_app/base/tree_copy.h"

namespace vxclone {

// What lies in the clone folder waits in the data folder, beside it, while the clone folder serves for a look
// at the television that must leave no trace. All on one file system, so that nothing is copied. The holder
// of the television alone calls these. A process may die at any moment of them: `putContentBack` puts it
// right.

/// Moves everything in the clone folder `root` aside. What an earlier caller left aside is put back before.
/// Errors: the disk says no; everything is where it was, as far as the disk allows.
Result<void> setContentAside(const std::filesystem::path& dataFolder, const Tree& root);

/// Puts back what was set aside, in place of what is in the clone folder `root`. Result: whether anything was
/// set aside. Errors: the disk says no; what is not back yet stays aside.
Result<bool> putContentBack(const std::filesystem::path& dataFolder, const Tree& root);

/// Whether anything is set aside. Error: nobody can tell.
Result<bool> isContentAside(const std::filesystem::path& dataFolder);

/// How much that is; nothing where nobody can tell.
TreeSize sizeOfContentAside(const std::filesystem::path& dataFolder);

}  // namespace vxclone
