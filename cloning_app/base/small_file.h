#pragma once

#include <optional>
#include <string>

#include "cloning_app/base/tree_walk.h"

namespace vxclone {

/// Reads at most `most` bytes of the regular file `name` in the folder, without following a link. Result:
/// none when there is no such file. Errors: it cannot be read, or is something else (`UnsafeEntry`).
Result<std::optional<std::string>> readSmallFile(const Tree& folder, const std::string& name,
                                                 std::size_t most);

/// The file that is made first when the file `name` is replaced; a process that died may have left it.
std::string newFileOf(const std::string& name);

/// What of a replaced file is on the disk when the call returns.
enum class Flushed { Content, ContentAndName };

/// Puts a file with this content in the place of the file `name` in one step: after a crash the one or the
/// other is there. Errors: the disk says no; then the old one is there, or the new one is not flushed.
Result<void> replaceSmallFile(const Tree& folder, const std::string& name, const std::string& content,
                              Flushed flushed);

/// Makes the file `name` in the folder in place of whatever has that name. On failure the file is gone.
/// Errors: the disk says no.
Result<void> writeSmallFile(const Tree& folder, const std::string& name, const std::string& content);

}  // namespace vxclone
