#include "virtual_tv/bus/bus_share.h"

#include "virtual_tv/bus/bus_keeper.h"
#include "virtual_tv/process/program.h"

namespace vxtv {

namespace {

constexpr const char* kDaemon = "dbus-daemon";

Result<StartedService> startDaemon(ServiceStart start) {
    const auto daemon = findProgram(kDaemon);
    if (!daemon) {
        return failure(ErrorCode::CannotRun,
                       "dbus-daemon is not installed, so applications in the television cannot talk to each "
                       "other; install Debian's package dbus-daemon (on older systems: dbus)");
    }
    return startBus(*daemon, std::move(start));
}

}  // namespace

BusShare::BusShare(const Folder& folder)
    : share_({folder.run(), folder.busLock(), folder.busAddress(), "the message bus"}) {}

Result<void> BusShare::take() {
    return share_.take(startDaemon);
}

}  // namespace vxtv
