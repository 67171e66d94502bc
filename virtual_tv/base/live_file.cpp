#include "virtual_tv/base/live_file.h"

#include <fcntl.h>
#include <sys/file.h>

#include <array>
#include <cerrno>

#include "virtual_tv/base/descriptor.h"

namespace vxtv {

namespace {

constexpr std::size_t kLongestLine = 256;

Descriptor openedLiveFile(const std::filesystem::path& file) {
    return Descriptor(open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
}

bool isHeld(const Descriptor& file) {
    return flock(file.get(), LOCK_SH | LOCK_NB) != 0 && errno == EWOULDBLOCK;
}

}  // namespace

std::optional<std::string> lineOfLiveFile(const std::filesystem::path& path) {
    const Descriptor file = openedLiveFile(path);
    if (!file || !isHeld(file)) {
        return std::nullopt;
    }
    std::array<char, kLongestLine> buffer{};
    const ssize_t length = read(file.get(), buffer.data(), buffer.size());
    if (length <= 0) {
        return std::nullopt;
    }
    const std::string text(buffer.data(), static_cast<std::size_t>(length));
    // A line without a line end is still being written.
    const std::size_t end = text.find('\n');
    return end == std::string::npos ? std::nullopt : std::optional(text.substr(0, end));
}

void waitForEndOfLiveFile(const std::filesystem::path& path) {
    const Descriptor file = openedLiveFile(path);
    while (file && flock(file.get(), LOCK_SH) != 0 && errno == EINTR) continue;
}

}  // namespace vxtv
