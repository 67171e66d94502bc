#pragma once

#include <optional>
#include <string>
#include <utility>

#include "virtual_tv/base/descriptor.h"

namespace vxtv {

/// A message between the two sides of a session.
struct Message {
    enum class Kind : char {
        Signal,      ///< to the inside: `number` is a signal for the command
        Ended,       ///< the command ended; `number` is its exit status
        NotStarted,  ///< the command could not be run; `number` is the exit status, `text` the sentence
        Failed       ///< the session could not be made; `number` is an ErrorCode, `text` the sentence
    };
    Kind kind;
    int number = 0;
    std::string text;
};

/// One end of a connection between two processes of a session. If it is closed, the other end receives
/// nothing any more.
class MessageChannel {
 public:
    MessageChannel() = default;
    /// Takes over the descriptor of an end.
    explicit MessageChannel(Descriptor socket) : socket_(std::move(socket)) {}

    /// Both ends, to be distributed by a fork. On failure the ends are empty, and errno is set.
    static std::pair<MessageChannel, MessageChannel> makePair();

    int descriptor() const { return socket_.get(); }
    explicit operator bool() const { return static_cast<bool>(socket_); }
    void close() { socket_.close(); }
    /// Does not wait for the reader. False if the other end is closed.
    bool send(const Message& message) const;
    /// Waits for the next message; empty if the other end is closed.
    std::optional<Message> receive() const;

 private:
    Descriptor socket_;
};

}  // namespace vxtv
