#include "virtual_tv/television/line_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

namespace vxtv {

namespace {

constexpr mode_t kLineFileMode = 0600;

}  // namespace

LineFile::LineFile(std::filesystem::path path) : path_(std::move(path)) {}

LineFile::~LineFile() {
    if (descriptor_ >= 0) {
        close(descriptor_);
    }
}

int LineFile::descriptor() {
    const std::lock_guard lock(mutex_);
    if (descriptor_ < 0) {
        descriptor_ =
            open(path_.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC | O_NOFOLLOW, kLineFileMode);
    }
    return descriptor_;
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

}  // namespace vxtv
