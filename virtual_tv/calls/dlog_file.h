#pragma once

#include <filesystem>
#include <string_view>

#include "virtual_tv/calls/line_file.h"

namespace vxtv {

/// The television's log, one line for each message: "<seconds.milliseconds of the monotonic clock> <process>
/// <priority's letter> <tag>: <text>".
///
/// Threads and processes: any; lines are never mixed.
class DlogFile {
 public:
    explicit DlogFile(const std::filesystem::path& file) : file_(file) {}

    /// Appends a message of any length. Line ends within it become blanks, and those at its end are removed.
    /// Colour codes stay. Result: whether it was written completely. May throw std::bad_alloc.
    bool append(int priority, std::string_view tag, std::string_view text);

 private:
    LineFile file_;
};

}  // namespace vxtv
