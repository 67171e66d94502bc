#pragma once

#include <deque>
#include <string>
#include <string_view>
#include <utility>

#include "common/error.h"

namespace vxtv {

/// The reason of a failed operation on message ports. The value is the status that the platform call returns.
enum class PortError : int {
    Failed = -1,           ///< not enough memory, or an error of the system
    BadArgument = -2,      ///< a null, an empty name, an invalid character in a name, text that is not UTF-8
    NameTooLong = -3,      ///< the bus name would have more than 255 bytes
    NameTaken = -4,        ///< another process has the port
    NoSuchPort = -5,       ///< the application has no such port
    MessageTooLarge = -6,  ///< keys and values together are over the limit
    ReceiverFull = -7,     ///< too many messages wait for the receiver
    NoBus = -8,            ///< no bus runs, or it has ended
    NoAnswer = -9,         ///< bus or receiver took too long
    NoLocalPort = -10,     ///< this process has no port of that id
    TooManyPorts = -11,    ///< the process has the maximum number of ports
};

template <class Value>
using PortResult = tl::expected<Value, PortError>;

/// Named strings in the order in which they were added. Adding an entry does not move the others in memory.
using PortEntries = std::deque<std::pair<std::string, std::string>>;

/// The bus name of the application's port: "vxtv.APPLICATION.PORT". An application's id consists of parts
/// separated by dots; a port's name is one part. A part has letters, digits, "-" and "_", and does not begin
/// with a digit. On failure BadArgument or NameTooLong.
PortResult<std::string> portBusName(std::string_view application, std::string_view port);

}  // namespace vxtv
