#pragma once

#include <optional>
#include <string>

#include "cloning_app/base/tree_walk.h"

namespace vxclone {

/// Reads at most `most` bytes of the regular file `name` in the folder, without following a link. Result:
/// empty if there is no such file. Errors: it cannot be read, or it is not a regular file (`UnsafeEntry`).
Result<std::optional<std::string>> readSmallFile(const Tree& folder, const std::string& name,
                                                 std::size_t most);

/// The temporary file for replacing the file `name`. It may be a leftover of a process that died.
std::string newFileOf(const std::string& name);

/// The parts of a replaced file that are on the disk when the call returns.
enum class Flushed { Content, ContentAndName };

/// Replaces the content of the file `name` in one step: after a crash the old or the new file is there.
/// Errors: a failure of the disk; then the old file is there, or the new one is not flushed.
Result<void> replaceSmallFile(const Tree& folder, const std::string& name, const std::string& content,
                              Flushed flushed);

/// Creates the file `name` in the folder and replaces anything of that name. On failure the file does not
/// exist. Errors: a failure of the disk.
Result<void> writeSmallFile(const Tree& folder, const std::string& name, const std::string& content);

}  // namespace vxclone
