#include "virtual_tv/process/message_channel.h"

#include <sys/socket.h>

#include <array>
#include <cstring>

namespace vxtv {

namespace {

/// Long enough for a sentence with two of the longest paths.
constexpr std::size_t kLongest = 16384;
constexpr std::size_t kHead = sizeof(Message::Kind) + sizeof(int);

}  // namespace

std::pair<MessageChannel, MessageChannel> MessageChannel::makePair() {
    std::pair<MessageChannel, MessageChannel> ends;
    std::array<int, 2> sockets{};
    if (socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, sockets.data()) == 0) {
        ends.first.socket_ = Descriptor(sockets[0]);
        ends.second.socket_ = Descriptor(sockets[1]);
    }
    return ends;
}

bool MessageChannel::send(const Message& message) const {
    std::string packet(kHead, '\0');
    packet[0] = static_cast<char>(message.kind);
    std::memcpy(packet.data() + sizeof(Message::Kind), &message.number, sizeof message.number);
    packet += message.text.substr(0, kLongest - kHead);
    return ::send(socket_.get(), packet.data(), packet.size(), MSG_NOSIGNAL | MSG_DONTWAIT) >= 0;
}

std::optional<Message> MessageChannel::receive() const {
    std::array<char, kLongest> packet{};
    ssize_t length = 0;
    do {
        length = recv(socket_.get(), packet.data(), packet.size(), 0);
    } while (length < 0 && errno == EINTR);
    if (length < static_cast<ssize_t>(kHead)) return std::nullopt;
    Message message{static_cast<Message::Kind>(packet[0]), 0, {}};
    std::memcpy(&message.number, packet.data() + sizeof(Message::Kind), sizeof message.number);
    message.text.assign(packet.data() + kHead, static_cast<std::size_t>(length) - kHead);
    return message;
}

}  // namespace vxtv
