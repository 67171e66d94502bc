#pragma once

#include <string>

namespace vxtv {

/// An address for a new bus that cannot be guessed. It is not a file, so it works in every mount namespace
/// and for any length of the television's path, and it ends with the bus.
std::string newBusAddress();

/// The configuration of dbus-daemon for the address: it serves only its own user and starts no services.
std::string busConfig(const std::string& address);

}  // namespace vxtv
