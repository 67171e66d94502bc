#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "virtual_tv/base/error.h"
#include "virtual_tv/store/folder.h"

namespace vxtv {

/// The mark that tells programs that the secure storage is up: a file that vxtv makes when a session begins
/// and removes when the last one ends. What somebody else put at its path stays.

/// Makes the mark unless something is there. Errors: Io.
Result<void> raiseReadyMark(const std::filesystem::path& mark);

/// Removes the mark if vxtv made it.
void lowerReadyMark(const std::filesystem::path& mark);

/// The address of the television's message bus, as any D-Bus program takes it, or nothing when no bus is up.
/// Threads: any.
std::optional<std::string> busAddress(const Folder& folder);

}  // namespace vxtv
