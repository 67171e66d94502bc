#pragma once

#include <filesystem>
#include <mutex>
#include <string_view>

namespace vxtv {

/// A file to which many processes and threads add whole lines, each with one write at its end.
///
/// The file is made with the first line. Threads and processes: any; lines do not mix.
class LineFile {
 public:
    explicit LineFile(std::filesystem::path path);
    ~LineFile();
    LineFile(const LineFile&) = delete;
    LineFile& operator=(const LineFile&) = delete;

    /// Adds the line, which ends in its line feed. Result: whether it was written whole.
    bool append(std::string_view line);

 private:
    int descriptor();

    std::filesystem::path path_;
    std::mutex mutex_;
    int descriptor_ = -1;
};

}  // namespace vxtv
