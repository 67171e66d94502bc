#pragma once

#include <filesystem>
#include <string>

#include "virtual_tv/base/error.h"
#include "virtual_tv/process/live_share.h"

namespace vxtv {

/// An address for a new bus that cannot be guessed. It is not a file, so it works in every mount namespace
/// and for any length of the television's path, and it ends with the bus.
std::string newBusAddress();

/// The configuration of dbus-daemon for the address: it serves only its own user and starts no services.
std::string busConfig(const std::string& address);

/// Starts the program dbus-daemon and a keeper. The keeper is a process that outlives the caller and ends the
/// daemon as soon as it gets the exclusive lock. If the keeper is killed, the daemon ends; if the daemon
/// ends, the keeper ends. Result: the bus, as soon as programs can connect. On failure CannotRun. Before: the
/// caller holds the shared lock. It may have threads.
Result<StartedService> startBus(const std::filesystem::path& daemon, ServiceStart start);

}  // namespace vxtv
