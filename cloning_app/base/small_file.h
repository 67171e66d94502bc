#pragma once

#include <optional>
#include <string>

#include "cloning_app/base/tree_walk.h"

namespace vxclone {

/// Reads at most `most` bytes of the regular file `name` in the folder, without following a link. Result:
/// none when there is no such file. Errors: it cannot be read, or is something else (`UnsafeEntry`).
Result<std::optional<std::string>> readSmallFile(const Tree& folder, const std::string& name,
                                                 std::size_t most);

/// Makes the file `name` in the folder in place of whatever has that name. On failure the file is gone.
/// Errors: the disk says no.
Result<void> writeSmallFile(const Tree& folder, const std::string& name, const std::string& content);

}  // namespace vxclone
