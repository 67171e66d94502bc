#pragma once

#include <filesystem>
#include <string_view>

#include "virtual_tv/calls/line_file.h"

namespace vxtv {

/// The television's log, one line a message:
/// "<seconds.milliseconds of the monotonic clock> <process> <priority's letter> <tag>: <text>".
///
/// Threads and processes: any; lines do not mix.
class DlogFile {
 public:
    explicit DlogFile(const std::filesystem::path& file) : file_(file) {}

    /// Adds the message, of any length. Line ends in it become blanks, those at its end go; colour codes
    /// stay. Result: whether it was written whole. May throw std::bad_alloc.
    bool append(int priority, std::string_view tag, std::string_view text);

 private:
    LineFile file_;
};

}  // namespace vxtv
