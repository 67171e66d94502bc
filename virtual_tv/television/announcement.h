#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "virtual_tv/base/error.h"
#include "virtual_tv/store/folder.h"

namespace vxtv {

/// The mark that tells programs that the secure storage is ready. It is a file that vxtv makes at the start
/// of the first session and removes at the end of the last one. A file of somebody else at its path is left
/// alone.

/// Makes the mark unless something exists at its path. Errors: Io.
Result<void> raiseReadyMark(const std::filesystem::path& mark);

/// Removes the mark if vxtv made it.
void lowerReadyMark(const std::filesystem::path& mark);

/// The address of the television's message bus for any D-Bus program; empty if no bus runs. Threads: any.
std::optional<std::string> busAddress(const Folder& folder);

}  // namespace vxtv
