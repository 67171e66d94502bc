#include "virtual_tv/bus/bus_keeper.h"

#include <fcntl.h>
#include <fmt/core.h>
#include <fmt/format.h>
#include <poll.h>
#include <signal.h>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/wait.h>

#include <array>
#include <chrono>
#include <random>

#include "virtual_tv/process/keeper.h"

namespace vxtv {

namespace {

// By default the daemon accepts only its own user. This policy does not mention users, so that default holds.
constexpr const char* kConfig =
    R"(<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <listen>{}</listen>
  <auth>EXTERNAL</auth>
  <apparmor mode="disabled"/>
  <policy context="default">
    <allow own="*"/>
    <allow send_destination="*"/>
    <allow receive_sender="*"/>
  </policy>
  <limit name="max_message_size">1048576</limit>
  <limit name="max_incoming_bytes">4194304</limit>
  <limit name="max_outgoing_bytes">4194304</limit>
  <limit name="max_message_unix_fds">0</limit>
  <limit name="max_completed_connections">512</limit>
  <limit name="max_connections_per_user">512</limit>
  <limit name="max_names_per_connection">4</limit>
  <limit name="auth_timeout">5000</limit>
</busconfig>
)";

using Clock = std::chrono::steady_clock;
constexpr std::chrono::seconds kStartTime(5);

// The numbers of the descriptors in the keeper and the daemon. The keeper alone has the last two.
enum : int { kConfigAt = kFirstKept, kAddressAt, kLifeAt, kLockAt };
constexpr const char* kConfigFile = "--config-file=/proc/self/fd/3";
constexpr const char* kPrintAddress = "--print-address=4";

/// The data that the keeper needs. Between fork and end it may only use functions that are safe in a signal
/// handler, because the caller may have had threads.
struct Plan {
    const char* daemon;
    int config;
    int address;
    int life;
    int lock;
};

[[noreturn]] void becomeDaemon(const char* program, pid_t keeper) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
    if (getppid() == keeper) {
        execl(program, "dbus-daemon", "--nofork", "--nopidfile", "--nosyslog", kConfigFile, kPrintAddress,
              static_cast<char*>(nullptr));
    }
    _exit(1);
}

[[noreturn]] void keep(const Plan& plan) {
    becomeKeeper("vxtv-bus", {plan.config, plan.address, plan.life, plan.lock});
    fcntl(kLockAt, F_SETFD, FD_CLOEXEC);
    const pid_t keeper = getpid();
    const pid_t daemon = fork();
    if (daemon < 0) _exit(1);
    if (daemon == 0) becomeDaemon(plan.daemon, keeper);
    close(kConfigAt);
    close(kAddressAt);
    keepUntilLocked(kLockAt, daemon);
}

tl::unexpected<Error> notStarted(const std::string& why) {
    return failure(ErrorCode::CannotRun,
                   fmt::format("the message bus did not start ({}), so applications cannot talk to each "
                               "other; see that dbus-daemon runs on this machine, then run the command again",
                               why));
}

Descriptor fileWith(const std::string& text) {
    Descriptor file(memfd_create("vxtv-bus.conf", MFD_CLOEXEC));
    const auto length = static_cast<ssize_t>(text.size());
    const bool isWritten =
        file && write(file.get(), text.data(), text.size()) == length && lseek(file.get(), 0, SEEK_SET) == 0;
    return isWritten ? std::move(file) : Descriptor();
}

/// The line that the daemon writes when it listens.
Result<std::string> readAddress(const Descriptor& pipe) {
    const auto deadline = Clock::now() + kStartTime;
    std::string line;
    while (line.find('\n') == std::string::npos) {
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now());
        pollfd ready = {pipe.get(), POLLIN, 0};
        const int polled = left.count() > 0 ? poll(&ready, 1, static_cast<int>(left.count())) : 0;
        if (polled < 0 && errno == EINTR) continue;
        if (polled <= 0) return notStarted("it took longer than 5 seconds");
        std::array<char, 256> buffer{};
        const ssize_t length = read(pipe.get(), buffer.data(), buffer.size());
        if (length <= 0) return notStarted("dbus-daemon ended");
        line.append(buffer.data(), static_cast<std::size_t>(length));
    }
    return line.substr(0, line.find('\n'));
}

}  // namespace

std::string newBusAddress() {
    std::random_device random;
    return fmt::format("unix:abstract=vxtv-{:08x}{:08x}{:08x}{:08x}", random(), random(), random(), random());
}

std::string busConfig(const std::string& address) {
    return fmt::format(kConfig, address);
}

Result<StartedService> startBus(const std::filesystem::path& daemon, ServiceStart start) {
    const Descriptor config = fileWith(busConfig(newBusAddress()));
    std::array<int, 2> pipe{};
    if (!config || pipe2(pipe.data(), O_CLOEXEC) != 0) return notStarted(reason());
    const Descriptor readEnd(pipe[0]);
    Descriptor writeEnd(pipe[1]);
    const Plan plan = {daemon.c_str(), config.get(), writeEnd.get(), start.life, start.lock.get()};
    const pid_t keeper = fork();
    if (keeper < 0) return notStarted(reason());
    if (keeper == 0) keep(plan);
    writeEnd.close();
    auto address = readAddress(readEnd);
    if (address) return StartedService{std::move(*address), keeper};
    kill(keeper, SIGKILL);
    while (waitpid(keeper, nullptr, 0) < 0 && errno == EINTR) continue;
    return tl::make_unexpected(address.error());
}

}  // namespace vxtv
