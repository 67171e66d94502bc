#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace vxtv {

// A file in which a process tells where it is, and which it keeps locked for its whole life, however that
// ends: so the file of a dead one is not believed.

/// The line that the living process wrote, or nothing when there is no such process. Threads: any.
std::optional<std::string> lineOfLiveFile(const std::filesystem::path& file);

/// Waits until no process keeps the file; returns at once when there is none.
void waitForEndOfLiveFile(const std::filesystem::path& file);

}  // namespace vxtv
