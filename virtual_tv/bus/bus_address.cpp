#include "virtual_tv/bus/bus_address.h"

#include <fcntl.h>
#include <sys/file.h>

#include <array>
#include <cerrno>

#include "virtual_tv/session/descriptor.h"

namespace vxtv {

namespace {

constexpr std::size_t kLongestAddress = 256;

/// The bus holds the lock for its whole life, however that ends, so the file of a dead one is not believed.
bool isHeld(const Descriptor& file) {
    return flock(file.get(), LOCK_SH | LOCK_NB) != 0 && errno == EWOULDBLOCK;
}

}  // namespace

std::optional<std::string> busAddress(const Folder& folder) {
    const Descriptor file(open(folder.busAddress().c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
    if (!file || !isHeld(file)) return std::nullopt;
    std::array<char, kLongestAddress> buffer{};
    const ssize_t length = read(file.get(), buffer.data(), buffer.size());
    if (length <= 0) return std::nullopt;
    const std::string text(buffer.data(), static_cast<std::size_t>(length));
    // A line that is not at its end yet is still being written.
    const std::size_t end = text.find('\n');
    return end == std::string::npos ? std::nullopt : std::optional(text.substr(0, end));
}

}  // namespace vxtv
