#pragma once

#include <sys/types.h>

#include <filesystem>
#include <string>

#include "virtual_tv/session/descriptor.h"
#include "virtual_tv/television/error.h"

namespace vxtv {

/// What a bus is started with.
struct BusStart {
    std::filesystem::path daemon;  ///< the program dbus-daemon
    Descriptor lock;               ///< an own opening of the bus lock, which is taken to know when to end
    int life = -1;                 ///< stays open while the bus or its keeper is there
};

/// A bus that is up.
struct StartedBus {
    std::string address;
    pid_t keeper = -1;  ///< a child of the caller's, to be waited for when it has ended
};

/// Starts dbus-daemon and a keeper, a process that outlives the caller and ends the daemon as soon as it gets
/// the lock exclusively. A keeper that is killed takes the daemon with it, and a daemon that ends its keeper.
/// Result: the bus, when programs may connect. On failure CannotRun.
/// Before: the caller holds the lock shared. It may have threads.
Result<StartedBus> startBus(BusStart start);

}  // namespace vxtv
