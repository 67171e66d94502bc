#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <map>
#include <mutex>
#include <thread>

#include "virtual_tv/ports/port_message.h"

namespace vxtv {

/// How many messages may wait for a process until it has looked at them.
inline constexpr std::size_t kMostWaiting = 64;

/// Hands the messages of this process's ports to their receivers, one after the other, on a thread of its
/// own: a receiver that waits for something holds up other messages, but nothing else.
/// Threads: any.
class Delivery {
 public:
    using Receiver = std::function<void(int port, PortMessage message)>;

    Delivery();
    ~Delivery() { end(); }
    Delivery(const Delivery&) = delete;
    Delivery& operator=(const Delivery&) = delete;

    /// From now on the port's messages, those that wait included, go to the receiver.
    void setReceiver(int port, Receiver receiver);

    /// Takes the message over. Result: false when there is no room for it.
    bool accept(int port, PortMessage message);

    /// Delivers nothing more, and waits for the receiver that is being called. Messages that still wait are
    /// dropped. Not to be called by a receiver.
    void end();

    /// Delivers nothing more, and waits for the receiver that is being called, but not for long: for a
    /// process that ends. A receiver may call it, and does not wait for itself.
    void hush();

 private:
    struct Waiting {
        int port = 0;
        PortMessage message;
    };
    void deliverAll();

    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<Waiting> waiting_;
    std::map<int, Receiver> receivers_;
    bool ending_ = false;
    bool hushed_ = false;
    bool delivering_ = false;
    std::thread thread_;
};

}  // namespace vxtv
