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

/// The number of messages that may wait for a process.
inline constexpr std::size_t kMostWaiting = 64;

/// Passes the messages of this process's ports to their receivers, one after the other, on its own thread. A
/// receiver that blocks delays other messages, but nothing else. Threads: any.
class Delivery {
 public:
    using Receiver = std::function<void(int port, PortMessage message)>;

    Delivery();
    ~Delivery() { end(); }
    Delivery(const Delivery&) = delete;
    Delivery& operator=(const Delivery&) = delete;

    /// From now on the receiver gets the port's messages, including those that already wait.
    void setReceiver(int port, Receiver receiver);

    /// Queues the message. Result: false if the queue is full.
    bool accept(int port, PortMessage message);

    /// Stops the delivery and waits for the receiver that is running. Waiting messages are dropped. A
    /// receiver must not call it.
    void end();

    /// For a process that ends: stops the delivery and waits for a limited time for the receiver that is
    /// running. A receiver may call it and does not wait for itself.
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
