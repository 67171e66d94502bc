#pragma once

#include <cstdint>
#include <filesystem>
#include <mutex>
#include <string_view>

#include "virtual_tv/base/descriptor.h"

namespace vxtv {

/// A file to which many processes and threads add whole lines, each with one write at its end.
///
/// The file is made with the first line. What is no plain file, or is a link, is never written to. Threads
/// and processes: any; lines do not mix.
class LineFile {
 public:
    explicit LineFile(std::filesystem::path path);
    LineFile(const LineFile&) = delete;
    LineFile& operator=(const LineFile&) = delete;

    /// Adds the line, which ends in its line feed. Result: whether it was written whole.
    bool append(std::string_view line);

 private:
    int descriptor();

    std::filesystem::path path_;
    std::mutex mutex_;
    Descriptor file_;
};

/// The time that both logs write: microseconds of the monotonic clock, which all processes of this machine
/// share.
std::int64_t monotonicMicroseconds();

}  // namespace vxtv
