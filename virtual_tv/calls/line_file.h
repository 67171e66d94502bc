#pragma once

#include <cstdint>
#include <filesystem>
#include <mutex>
#include <string_view>

#include "virtual_tv/base/descriptor.h"

namespace vxtv {

/// A file to which many processes and threads append complete lines, each with one write.
///
/// The first line creates the file. If it is a link or not a regular file, nothing is written. Threads and
/// processes: any; lines are never mixed.
class LineFile {
 public:
    explicit LineFile(std::filesystem::path path);
    LineFile(const LineFile&) = delete;
    LineFile& operator=(const LineFile&) = delete;

    /// Appends the line, which ends with a line feed. Result: whether it was written completely.
    bool append(std::string_view line);

 private:
    int descriptor();

    std::filesystem::path path_;
    std::mutex mutex_;
    Descriptor file_;
};

/// The time in both logs: microseconds of the monotonic clock, which is the same for all processes of this
/// machine.
std::int64_t monotonicMicroseconds();

}  // namespace vxtv
