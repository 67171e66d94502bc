#pragma once

#include <deque>
#include <string>
#include <string_view>
#include <utility>

#include "common/error.h"

namespace vxtv {

/// The reason of a failed operation on message ports. The value is the status that the platform call returns.
enum class PortError : int {
    Failed = -1,       ///< short of memory, or the system said no
    BadArgument = -2,  ///< a null, an empty name, a character that names may not have, text that is no UTF-8
    NameTooLong = -3,  ///< application and port make a name of more than 255 bytes
    NameTaken = -4,    ///< another process has the port
    NoSuchPort = -5,   ///< the application has no such port
    MessageTooLarge = -6,  ///< keys and values together are over the limit
    ReceiverFull = -7,     ///< the receiver has not looked at too many messages yet
    NoBus = -8,            ///< no bus is up, or it went away
    NoAnswer = -9,         ///< bus or receiver took too long
    NoLocalPort = -10,     ///< this process has no port of that id
    TooManyPorts = -11,    ///< a process may have so many and no more
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
