#pragma once

#include <systemd/sd-bus.h>

#include <chrono>
#include <memory>
#include <string>

#include "virtual_tv/ports/port.h"

namespace vxtv {

/// The longest wait of an operation for the bus or for another application.
inline constexpr std::chrono::seconds kLongestWait(3);

struct FreeBus {
    void operator()(sd_bus* bus) const { sd_bus_close_unref(bus); }
};
struct FreeMessage {
    void operator()(sd_bus_message* message) const { sd_bus_message_unref(message); }
};
/// Only one thread at a time may use it.
using BusConnection = std::unique_ptr<sd_bus, FreeBus>;
using BusMessage = std::unique_ptr<sd_bus_message, FreeMessage>;

/// Connects to the bus; no operation on the connection waits longer than `kLongestWait`.
/// On failure NoBus or NoAnswer.
PortResult<BusConnection> connectToBus(const std::string& address);

/// Calls a method and waits for its answer. On failure the error that the answer means.
PortResult<BusMessage> callOnBus(sd_bus* bus, sd_bus_message* call);

/// The error that a negative error number of the bus library means.
PortError portErrorOf(int negativeErrno);

/// The error name with which a full receiver answers.
inline constexpr const char* kReceiverFullName = "vxtv.Error.ReceiverFull";

}  // namespace vxtv
