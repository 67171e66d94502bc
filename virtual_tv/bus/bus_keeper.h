#pragma once

#include <filesystem>

#include "virtual_tv/base/error.h"
#include "virtual_tv/process/live_share.h"

namespace vxtv {

/// Starts the program dbus-daemon and a keeper, a process that outlives the caller and ends the daemon as
/// soon as it gets the lock exclusively. A keeper that is killed takes the daemon with it, and a daemon that
/// ends its keeper. Result: the bus, when programs may connect. On failure CannotRun. Before: the caller
/// holds the lock shared. It may have threads.
Result<StartedService> startBus(const std::filesystem::path& daemon, ServiceStart start);

}  // namespace vxtv
