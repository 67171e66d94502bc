#include "virtual_tv/session/bus_share.h"

#include <fcntl.h>
#include <fmt/core.h>
#include <sys/file.h>
#include <sys/wait.h>

#include <system_error>

#include "virtual_tv/bus/bus_address.h"
#include "virtual_tv/session/bus_keeper.h"
#include "virtual_tv/session/program.h"

namespace vxtv {

namespace {

constexpr const char* kDaemon = "dbus-daemon";
constexpr mode_t kOwnerOnly = 0600;

Descriptor opened(const std::filesystem::path& file) {
    return Descriptor(open(file.c_str(), O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC, kOwnerOnly));
}

bool isLocked(const Descriptor& file, int how) {
    while (file && flock(file.get(), how) != 0) {
        if (errno != EINTR) return false;
    }
    return static_cast<bool>(file);
}

tl::unexpected<Error> ioFailure(const std::filesystem::path& file) {
    return failure(ErrorCode::Io, fmt::format("the message bus cannot use '{}': {}; see that you may write "
                                              "to the television's folder",
                                              file.string(), reason()));
}

}  // namespace

/// The file of the address is locked for the bus, which inherits the lock and keeps it for its whole life.
Result<void> BusShare::start() {
    const auto daemon = findProgram(kDaemon);
    if (!daemon) {
        return failure(ErrorCode::CannotRun,
                       "dbus-daemon is not installed, so applications in the television cannot talk to each "
                       "other; install Debian's package dbus-daemon (on older systems: dbus)");
    }
    const Descriptor file = opened(folder_.busAddress());
    Descriptor lock = opened(folder_.busLock());
    const bool isOurs = lock && isLocked(file, LOCK_EX | LOCK_NB) && ftruncate(file.get(), 0) == 0;
    if (!isOurs) return ioFailure(folder_.busAddress());
    const auto bus = startBus({*daemon, std::move(lock), file.get()});
    if (!bus) return tl::make_unexpected(bus.error());
    keeper_ = bus->keeper;
    const std::string line = bus->address + "\n";
    if (pwrite(file.get(), line.data(), line.size(), 0) != static_cast<ssize_t>(line.size())) {
        return ioFailure(folder_.busAddress());
    }
    return {};
}

Result<void> BusShare::take() {
    std::error_code ignored;
    std::filesystem::create_directory(folder_.run(), ignored);
    // One at a time finds out whether there is a bus and starts it.
    const Descriptor turn(open(folder_.run().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!isLocked(turn, LOCK_EX)) return ioFailure(folder_.run());
    Descriptor lock = opened(folder_.busLock());
    // A keeper that is ending its bus has the lock until that is done.
    if (!isLocked(lock, LOCK_SH)) return ioFailure(folder_.busLock());
    if (!busAddress(folder_)) {
        if (const auto started = start(); !started) return started;
    }
    lock_ = std::move(lock);
    return {};
}

void BusShare::endBus() {
    lock_.close();
    const Descriptor life(open(folder_.busAddress().c_str(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC));
    isLocked(life, LOCK_SH);
    while (keeper_ > 0 && waitpid(keeper_, nullptr, 0) < 0 && errno == EINTR) continue;
    unlink(folder_.busAddress().c_str());
    unlink(folder_.busLock().c_str());
}

}  // namespace vxtv
