#pragma once

#include <optional>
#include <string>
#include <utility>

#include "virtual_tv/base/descriptor.h"

namespace vxtv {

/// What the two sides of a session tell each other.
struct Message {
    enum class Kind : char {
        Signal,      ///< outwards in: `number` is a signal for the command
        Ended,       ///< the command ended; `number` is its exit status
        NotStarted,  ///< the command could not be run; `number` is the exit status, `text` the sentence
        Failed       ///< the session could not be made; `number` is an ErrorCode, `text` the sentence
    };
    Kind kind;
    int number = 0;
    std::string text;
};

/// One end of a connection between two processes of a session; closed, the other end reads nothing any more.
class MessageChannel {
 public:
    MessageChannel() = default;
    /// Takes over the descriptor of an end.
    explicit MessageChannel(Descriptor socket) : socket_(std::move(socket)) {}

    /// Both ends, to be shared out over a fork. Empty ends with errno set when the system has none.
    static std::pair<MessageChannel, MessageChannel> makePair();

    int descriptor() const { return socket_.get(); }
    explicit operator bool() const { return static_cast<bool>(socket_); }
    void close() { socket_.close(); }
    /// Never waits for the reader. False when it is gone.
    bool send(const Message& message) const;
    /// Waits for the next message; nothing when the other end is closed.
    std::optional<Message> receive() const;

 private:
    Descriptor socket_;
};

}  // namespace vxtv
