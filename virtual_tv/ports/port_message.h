#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "virtual_tv/ports/bus_connection.h"
#include "virtual_tv/ports/port.h"

namespace vxtv {

/// The maximum size of the keys and values of one message together, in bytes.
inline constexpr std::size_t kLargestMessage = 64 * 1024;

/// The size of the keys and values together.
std::size_t sizeOf(const PortEntries& entries);

/// A message on its way to a port.
struct PortMessage {
    std::string application;  ///< of the sender
    std::string port;         ///< the sender's port for answers
    bool trusted = false;
    PortEntries entries;
};

/// The object and its one method to which a port's messages are sent. The owner of the port's name has this
/// object.
inline constexpr const char* kPortObject = "/vxtv/port";
inline constexpr const char* kPortInterface = "vxtv.MessagePort";
inline constexpr const char* kDeliverMethod = "Deliver";

/// The method call that delivers the message to the owner of the name. On failure BadArgument (a text that is
/// not UTF-8), MessageTooLarge or Failed.
PortResult<BusMessage> toCall(sd_bus* bus, const std::string& busName, const PortMessage& message);

/// The message in a call of `kDeliverMethod`; empty if the call holds something else.
std::optional<PortMessage> fromCall(sd_bus_message* call);

}  // namespace vxtv
