#include "virtual_tv/process/isolation.h"

#include <fcntl.h>
#include <fmt/core.h>
#include <sched.h>
#include <signal.h>
#include <sys/mount.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>

#include "virtual_tv/base/descriptor.h"

namespace vxtv {

namespace {

struct Way {
    Isolation isolation;
    unsigned long namespaces;
    std::string_view sentence;
};

constexpr unsigned long kMountsAndProcesses = CLONE_NEWNS | CLONE_NEWPID;

constexpr std::array kWays = {
    Way{Isolation::Root, kMountsAndProcesses, "isolated by a mount namespace of root"},
    Way{Isolation::User, kMountsAndProcesses | CLONE_NEWUSER, "isolated by a user namespace"},
    Way{Isolation::RealPaths, 0, "not isolated: /opt and /media of this machine lead into the television"},
};
static_assert(kWays.size() == static_cast<std::size_t>(Isolation::RealPaths) + 1);

const Way& wayOf(Isolation isolation) {
    return kWays[static_cast<std::size_t>(isolation)];
}

/// Queried once, before any namespace is entered: inside a new user namespace the answer would be "nobody".
struct ProcessIdentity {
    uid_t user = geteuid();
    gid_t group = getegid();
};

const ProcessIdentity& identity() {
    static const ProcessIdentity ours;
    return ours;
}

int writeFile(const char* path, const std::string& text) {
    const Descriptor file(open(path, O_WRONLY | O_CLOEXEC));
    const auto length = static_cast<ssize_t>(text.size());
    return file && write(file.get(), text.data(), text.size()) == length ? 0 : errno;
}

int keepIdentity() {
    const auto [user, group] = identity();
    // The kernel lets an unprivileged process map its group only after setgroups(2) was disabled.
    if (const int error = writeFile("/proc/self/setgroups", "deny"); error != 0 && error != ENOENT)
        return error;
    if (const int error = writeFile("/proc/self/uid_map", fmt::format("{0} {0} 1", user)); error != 0) {
        return error;
    }
    return writeFile("/proc/self/gid_map", fmt::format("{0} {0} 1", group));
}

int cutOffMounts() {
    return mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 ? 0 : errno;
}

/// Some systems allow the namespaces but refuse mounts in them, so the trial also mounts something.
int tryOut(Isolation isolation) {
    const pid_t child = forkInto(isolation);
    if (child < 0) return errno;
    if (child == 0) {
        int error = settleIn(isolation);
        if (error == 0 && mount("/", "/", nullptr, MS_BIND | MS_REC, nullptr) != 0) error = errno;
        _exit(error);
    }
    int status = 0;
    while (waitpid(child, &status, 0) < 0 && errno == EINTR) continue;
    return WIFEXITED(status) ? WEXITSTATUS(status) : EPERM;
}

}  // namespace

std::string_view describe(Isolation isolation) {
    return wayOf(isolation).sentence;
}

Result<Isolation> chooseIsolation(std::optional<Isolation> wish) {
    if (!wish) {
        for (const auto& way : kWays) {
            if (way.namespaces == 0 || tryOut(way.isolation) == 0) return way.isolation;
        }
    }
    const auto wanted = wish.value_or(Isolation::RealPaths);
    if (wanted == Isolation::RealPaths) return wanted;
    const int error = tryOut(wanted);
    if (error == 0) return wanted;
    return failure(
        ErrorCode::NoIsolation,
        fmt::format("this machine does not allow a {} namespace here: {}; {}, or leave --isolation out",
                    wanted == Isolation::Root ? "mount" : "user", reason(error),
                    wanted == Isolation::Root ? "run vxtv as root" : "run vxtv outside a container"));
}

pid_t forkInto(Isolation isolation) {
    identity();
    const auto namespaces = wayOf(isolation).namespaces;
    if (namespaces == 0) return fork();
    // No library function forks into a new namespace and leaves the caller in its old one.
    return static_cast<pid_t>(syscall(SYS_clone, namespaces | SIGCHLD, nullptr, nullptr, nullptr, nullptr));
}

int settleIn(Isolation isolation) {
    if (isolation == Isolation::RealPaths) return 0;
    if (isolation == Isolation::User) {
        if (const int error = keepIdentity(); error != 0) return error;
    }
    return cutOffMounts();
}

Result<void> enterMountNamespace() {
    identity();
    int error = unshare(CLONE_NEWNS) == 0 ? 0 : errno;
    if (error == EPERM) {
        error = unshare(CLONE_NEWUSER | CLONE_NEWNS) == 0 ? keepIdentity() : errno;
    }
    if (error == 0) error = cutOffMounts();
    if (error == 0) return {};
    return failure(
        ErrorCode::NoIsolation,
        fmt::format("this machine does not allow a mount namespace here: {}; run as root or outside a "
                    "container",
                    reason(error)));
}

}  // namespace vxtv
