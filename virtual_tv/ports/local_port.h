#pragma once

#include <atomic>
#include <memory>
#include <string>
#include <thread>

#include "virtual_tv/base/descriptor.h"
#include "virtual_tv/ports/bus_connection.h"
#include "virtual_tv/ports/delivery.h"

namespace vxtv {

/// A port of this process: its bus name, on a connection of its own, with a thread that queues messages in
/// `Delivery` and confirms them to the senders. A running receiver never blocks this thread.
class LocalPort {
 public:
    /// Connects and takes the name. On failure NameTaken, NoBus, NoAnswer or Failed.
    /// Ownership: the delivery must outlive the port.
    static PortResult<std::unique_ptr<LocalPort>> open(const std::string& address, const std::string& busName,
                                                       int id, Delivery& delivery);
    /// Releases the name. When it returns, the port does not exist any more.
    ~LocalPort();
    LocalPort(const LocalPort&) = delete;
    LocalPort& operator=(const LocalPort&) = delete;

    /// Whether it still has its name. False after the bus has ended.
    bool isOpen() const { return open_; }
    /// The address of its bus.
    const std::string& address() const { return address_; }

 private:
    LocalPort(std::string address, std::string busName, int id, Delivery& delivery);
    int takeName();
    static int onCall(sd_bus_message* call, void* port, sd_bus_error* error) noexcept;
    int answer(sd_bus_message* call);
    void serve();
    bool waitForWork();

    std::string address_;
    std::string busName_;
    int id_;
    Delivery& delivery_;
    BusConnection bus_;
    Descriptor stop_;
    std::atomic<bool> open_ = true;
    std::thread thread_;
};

}  // namespace vxtv
