#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace vxtv {

// A file with the address of a process, which keeps the file locked for its whole life. So the file of a dead
// process is ignored.

/// The line that the living process wrote; empty if there is no such process. Threads: any.
std::optional<std::string> lineOfLiveFile(const std::filesystem::path& file);

/// Waits until no process has the file locked.
void waitForEndOfLiveFile(const std::filesystem::path& file);

}  // namespace vxtv
