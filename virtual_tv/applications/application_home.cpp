#include "virtual_tv/applications/application_home.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <random>

#include "virtual_tv/base/live_file.h"

namespace vxtv {

namespace {

constexpr int kBacklog = 64;
constexpr time_t kPatienceSeconds = 5;
constexpr std::size_t kLongestRequest = 8U << 20U;
constexpr std::size_t kFewestTexts = 2;

using Size = std::uint64_t;

struct SocketAddress {
    sockaddr_un name{};
    socklen_t length = 0;

    const sockaddr* get() const { return reinterpret_cast<const sockaddr*>(&name); }
};

/// An abstract socket name, which is not a file: it begins with a NUL.
SocketAddress socketAddress(const std::string& address) {
    SocketAddress result;
    result.name.sun_family = AF_UNIX;
    const std::size_t length = std::min(address.size(), sizeof result.name.sun_path - 1);
    std::memcpy(result.name.sun_path + 1, address.data(), length);
    result.length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + length);
    return result;
}

void limitWaiting(const Descriptor& socket) {
    const timeval patience = {kPatienceSeconds, 0};
    setsockopt(socket.get(), SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
    setsockopt(socket.get(), SOL_SOCKET, SO_SNDTIMEO, &patience, sizeof patience);
}

/// Space for the one descriptor that is sent with a message.
union DescriptorRoom {
    cmsghdr header;
    std::array<char, CMSG_SPACE(sizeof(int))> bytes{};
};

/// Sends the bytes, and the descriptor with the first of them.
bool sendAll(const Descriptor& socket, const std::string& bytes, int descriptor) {
    std::size_t sent = 0;
    while (sent < bytes.size()) {
        iovec part = {const_cast<char*>(bytes.data()) + sent, bytes.size() - sent};
        DescriptorRoom room;
        msghdr message{};
        message.msg_iov = &part;
        message.msg_iovlen = 1;
        if (sent == 0) {
            message.msg_control = room.bytes.data();
            message.msg_controllen = room.bytes.size();
            cmsghdr* const header = CMSG_FIRSTHDR(&message);
            header->cmsg_level = SOL_SOCKET;
            header->cmsg_type = SCM_RIGHTS;
            header->cmsg_len = CMSG_LEN(sizeof descriptor);
            std::memcpy(CMSG_DATA(header), &descriptor, sizeof descriptor);
        }
        const ssize_t length = sendmsg(socket.get(), &message, MSG_NOSIGNAL);
        if (length < 0 && errno == EINTR) {
            continue;
        }
        if (length <= 0) {
            return false;
        }
        sent += static_cast<std::size_t>(length);
    }
    return true;
}

Descriptor descriptorIn(msghdr& message) {
    cmsghdr* const header = CMSG_FIRSTHDR(&message);
    if (header == nullptr || header->cmsg_level != SOL_SOCKET || header->cmsg_type != SCM_RIGHTS) {
        return {};
    }
    int descriptor = -1;
    std::memcpy(&descriptor, CMSG_DATA(header), sizeof descriptor);
    return Descriptor(descriptor);
}

/// Receives the next bytes, at most `most`, and keeps a descriptor that comes with them.
bool receiveSome(const Descriptor& socket, std::string& bytes, std::size_t most, Descriptor& descriptor) {
    std::array<char, 65536> buffer{};
    iovec part = {buffer.data(), std::min(most, buffer.size())};
    DescriptorRoom room;
    msghdr message{};
    message.msg_iov = &part;
    message.msg_iovlen = 1;
    message.msg_control = room.bytes.data();
    message.msg_controllen = room.bytes.size();
    ssize_t length = 0;
    do {
        length = recvmsg(socket.get(), &message, MSG_CMSG_CLOEXEC);
    } while (length < 0 && errno == EINTR);
    if (length <= 0) {
        return false;
    }
    if (Descriptor came = descriptorIn(message)) {
        descriptor = std::move(came);
    }
    bytes.append(buffer.data(), static_cast<std::size_t>(length));
    return true;
}

bool receiveAll(const Descriptor& socket, std::string& bytes, std::size_t size, Descriptor& descriptor) {
    while (bytes.size() < size) {
        if (!receiveSome(socket, bytes, size - bytes.size(), descriptor)) {
            return false;
        }
    }
    return true;
}

/// The texts, each with a NUL after it, preceded by their total length.
std::string packed(const std::string& application, const std::string& bundle) {
    std::string texts = application + '\0' + bundle + '\0';
    for (char** entry = environ; entry != nullptr && *entry != nullptr; ++entry) {
        texts += *entry;
        texts += '\0';
    }
    const Size size = texts.size();
    std::string request(sizeof size, '\0');
    std::memcpy(request.data(), &size, sizeof size);
    return request + texts;
}

std::vector<std::string> unpacked(const std::string& texts) {
    std::vector<std::string> result;
    for (std::size_t begin = 0; begin < texts.size();) {
        const std::size_t end = std::min(texts.find('\0', begin), texts.size());
        result.push_back(texts.substr(begin, end - begin));
        begin = end + 1;
    }
    return result;
}

bool isFromUs(const Descriptor& connection) {
    ucred peer{};
    socklen_t length = sizeof peer;
    return getsockopt(connection.get(), SOL_SOCKET, SO_PEERCRED, &peer, &length) == 0 &&
           (peer.uid == geteuid() || peer.uid == 0);
}

/// The server closes the connection when it has started the host.
void waitForClosing(const Descriptor& connection) {
    char nothing = 0;
    while (recv(connection.get(), &nothing, 1, 0) < 0 && errno == EINTR) continue;
}

}  // namespace

std::optional<Descriptor> launchAtHome(const Folder& folder, const std::string& application,
                                       const std::string& bundle) {
    const auto address = lineOfLiveFile(folder.homeAddress());
    const Descriptor connection(address ? socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0) : -1);
    std::array<int, 2> pipe{};
    if (!connection || pipe2(pipe.data(), O_CLOEXEC) != 0) {
        return std::nullopt;
    }
    Descriptor report(pipe[0]);
    Descriptor reporting(pipe[1]);
    limitWaiting(connection);
    const SocketAddress home = socketAddress(*address);
    const bool isAsked = connect(connection.get(), home.get(), home.length) == 0 &&
                         sendAll(connection, packed(application, bundle), reporting.get());
    if (!isAsked) {
        return std::nullopt;
    }
    reporting.close();
    waitForClosing(connection);
    return report;
}

Result<HomeDoor> HomeDoor::open() {
    std::random_device random;
    HomeDoor door(Descriptor(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)));
    door.address_ = fmt::format("vxtv-home-{:08x}{:08x}{:08x}{:08x}", random(), random(), random(), random());
    const SocketAddress address = socketAddress(door.address_);
    const bool isOpen = door.socket_ && bind(door.descriptor(), address.get(), address.length) == 0 &&
                        listen(door.descriptor(), kBacklog) == 0;
    if (isOpen) {
        return door;
    }
    return failure(ErrorCode::CannotRun,
                   fmt::format("the home of the applications cannot listen: {}", reason()));
}

Descriptor HomeDoor::accept() const {
    return Descriptor(accept4(socket_.get(), nullptr, nullptr, SOCK_CLOEXEC));
}

std::optional<HomeRequest> readRequest(const Descriptor& connection) {
    if (!isFromUs(connection)) {
        return std::nullopt;
    }
    limitWaiting(connection);
    Size size = 0;
    std::string head;
    HomeRequest request;
    if (!receiveAll(connection, head, sizeof size, request.report)) {
        return std::nullopt;
    }
    std::memcpy(&size, head.data(), sizeof size);
    std::string texts;
    if (size > kLongestRequest || !receiveAll(connection, texts, size, request.report)) {
        return std::nullopt;
    }
    std::vector<std::string> parts = unpacked(texts);
    if (parts.size() < kFewestTexts || !request.report) {
        return std::nullopt;
    }
    request.application = std::move(parts[0]);
    request.bundle = std::move(parts[1]);
    request.environment.assign(parts.begin() + kFewestTexts, parts.end());
    return request;
}

}  // namespace vxtv
