#pragma once

#include <string>

namespace vxtv {

/// An address for a new bus that nobody can guess. It is no file, so it works in every mount namespace, does
/// not depend on how deep the television lies, and is gone with the bus.
std::string newBusAddress();

/// The configuration with which dbus-daemon serves the address: for its own user alone, and it starts no
/// services.
std::string busConfig(const std::string& address);

}  // namespace vxtv
