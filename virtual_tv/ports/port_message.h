#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "virtual_tv/ports/bus_connection.h"
#include "virtual_tv/ports/port.h"

namespace vxtv {

/// How many bytes the keys and values of one message may have together.
inline constexpr std::size_t kLargestMessage = 64 * 1024;

/// Of the keys and values together.
std::size_t sizeOf(const PortEntries& entries);

/// A message on its way to a port.
struct PortMessage {
    std::string application;  ///< of the sender
    std::string port;         ///< where the sender takes answers
    bool trusted = false;
    PortEntries entries;
};

/// Where a port's messages go: the one method of the one object that the owner of a port's name has.
inline constexpr const char* kPortObject = "/vxtv/port";
inline constexpr const char* kPortInterface = "vxtv.MessagePort";
inline constexpr const char* kDeliverMethod = "Deliver";

/// The method call that delivers the message to the owner of the name.
/// On failure BadArgument (a text that is no UTF-8), MessageTooLarge or Failed.
PortResult<BusMessage> toCall(sd_bus* bus, const std::string& busName, const PortMessage& message);

/// The message in a call of `kDeliverMethod`, or nothing when the call holds something else.
std::optional<PortMessage> fromCall(sd_bus_message* call);

}  // namespace vxtv
