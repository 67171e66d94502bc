#include "virtual_tv/calls/line_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <utility>

#include "virtual_tv/base/own_file.h"

namespace vxtv {

LineFile::LineFile(std::filesystem::path path) : path_(std::move(path)) {}

int LineFile::descriptor() {
    const std::lock_guard lock(mutex_);
    if (!file_) {
        file_ = openOwnFile(path_, O_WRONLY | O_APPEND | O_CREAT).value_or(Descriptor());
    }
    return file_.get();
}

bool LineFile::append(std::string_view line) {
    const int file = descriptor();
    if (file < 0) {
        return false;
    }
    ssize_t written = -1;
    do {
        written = write(file, line.data(), line.size());
    } while (written < 0 && errno == EINTR);
    return written == static_cast<ssize_t>(line.size());
}

std::int64_t monotonicMicroseconds() {
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::microseconds>(now).count();
}

}  // namespace vxtv
