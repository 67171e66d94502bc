#pragma once

#include <filesystem>

#include "virtual_tv/base/error.h"
#include "virtual_tv/process/live_share.h"

namespace vxtv {

/// Starts the program dbus-daemon and a keeper. The keeper is a process that outlives the caller and ends the
/// daemon as soon as it gets the exclusive lock. If the keeper is killed, the daemon ends; if the daemon
/// ends, the keeper ends. Result: the bus, as soon as programs can connect. On failure CannotRun. Before: the
/// caller holds the shared lock. It may have threads.
Result<StartedService> startBus(const std::filesystem::path& daemon, ServiceStart start);

}  // namespace vxtv
