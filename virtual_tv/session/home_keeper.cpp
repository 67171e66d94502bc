#include "virtual_tv/session/home_keeper.h"

#include <fcntl.h>
#include <fmt/core.h>
#include <poll.h>
#include <signal.h>
#include <sys/file.h>
#include <sys/prctl.h>
#include <sys/signalfd.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <exception>

#include "virtual_tv/applications/application_home.h"
#include "virtual_tv/applications/application_launch.h"
#include "virtual_tv/process/keeper.h"
#include "virtual_tv/process/message_channel.h"

namespace vxtv {

namespace {

// The numbers of the descriptors in the keeper and the home. Only the keeper has the last one.
enum : int { kHomeDoorAt = kFirstKept, kHomeReportAt, kHomeLifeAt, kHomeLockAt };

tl::unexpected<Error> homeNotStarted(const std::string& why) {
    return failure(
        ErrorCode::CannotRun,
        fmt::format("the home of the applications did not start ({}), so they live and end with the "
                    "session that starts them; end other programs, then try again",
                    why));
}

/// Applications get the address of the message bus at their start, so the bus must live as long as the home.
/// The caller's share keeps the bus alive until the home has its own. Result: the home's share, or empty if
/// there is no bus.
Descriptor shareOfBus(const Folder& folder) {
    Descriptor lock(open(folder.busLock().c_str(), O_RDWR | O_NOFOLLOW | O_CLOEXEC));
    if (lock) flock(lock.get(), LOCK_SH);
    return lock;
}

/// In a child of the home: starts what the request on the connection asks for.
[[noreturn]] void serve(const Folder& folder, const Descriptor& connection) {
    try {
        if (const auto request = readRequest(connection)) {
            if (const auto started = startHost(folder, *request); !started) {
                writeHostReport(request->report.get(), tl::make_unexpected(started.error()));
            }
        }
    } catch (const std::exception&) {
        _exit(1);  // whoever asked reads the end of the report
    }
    _exit(0);
}

void answerAtTheDoor(const Folder& folder, const HomeDoor& door) {
    const Descriptor connection = door.accept();
    // A child serves the request, so that a slow request does not delay others. If fork fails, the requester
    // reads the end of the connection.
    if (connection && fork() == 0) serve(folder, connection);
}

[[noreturn]] void keepHouse(const Folder& folder, const HomeDoor& door) {
    sigset_t childEnded;
    sigemptyset(&childEnded);
    sigaddset(&childEnded, SIGCHLD);
    const Descriptor children(signalfd(-1, &childEnded, SFD_CLOEXEC | SFD_NONBLOCK));
    std::array<pollfd, 2> ready = {pollfd{door.descriptor(), POLLIN, 0}, pollfd{children.get(), POLLIN, 0}};
    while (true) {
        while (waitpid(-1, nullptr, WNOHANG) > 0) continue;
        if (poll(ready.data(), ready.size(), -1) < 0) continue;
        signalfd_siginfo drained{};
        while (read(children.get(), &drained, sizeof drained) == sizeof drained) continue;
        if (ready[0].revents != 0) answerAtTheDoor(folder, door);
    }
}

Result<void> moveIn(const HomePlan& plan) {
    if (const int error = settleIn(plan.isolation); error != 0) return homeNotStarted(reason(error));
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    return plan.furnish();
}

[[noreturn]] void becomeHome(const HomePlan& plan, const MessageChannel& report) {
    sigset_t all;
    sigfillset(&all);
    sigprocmask(SIG_SETMASK, &all, nullptr);
    signal(SIGCHLD, SIG_DFL);
    try {
        const Descriptor bus = shareOfBus(plan.folder);
        if (const auto moved = moveIn(plan); !moved) {
            report.send(
                {Message::Kind::Failed, static_cast<int>(moved.error().code), moved.error().sentence});
            _exit(1);
        }
        const HomeDoor door{Descriptor(kHomeDoorAt)};
        fcntl(kHomeDoorAt, F_SETFD, FD_CLOEXEC);
        report.send({Message::Kind::Ended, 0, {}});
        close(kHomeReportAt);
        keepHouse(plan.folder, door);
    } catch (const std::exception&) {
        _exit(1);
    }
}

[[noreturn]] void keepHome(const HomePlan& plan, const std::array<int, kKeptDescriptors>& descriptors) {
    becomeKeeper("vxtv-home", descriptors);
    const pid_t home = forkInto(plan.isolation);
    if (home < 0) _exit(1);
    if (home == 0) {
        close(kHomeLockAt);
        becomeHome(plan, MessageChannel(Descriptor(kHomeReportAt)));
    }
    close(kHomeDoorAt);
    close(kHomeReportAt);
    keepUntilLocked(kHomeLockAt, home);
}

Result<void> waitUntilReady(const MessageChannel& channel) {
    const auto message = channel.receive();
    if (!message) return homeNotStarted("its first process was ended");
    if (message->kind == Message::Kind::Failed) {
        return failure(static_cast<ErrorCode>(message->number), message->text);
    }
    return {};
}

}  // namespace

Result<StartedService> startHome(const HomePlan& plan, ServiceStart start) {
    const auto door = HomeDoor::open();
    VX_RETURN_IF_FAILED(door);
    auto [outside, inside] = MessageChannel::makePair();
    const pid_t keeper = outside ? fork() : -1;
    if (keeper < 0) return homeNotStarted(reason());
    if (keeper == 0) {
        keepHome(plan, {door->descriptor(), inside.descriptor(), start.life, start.lock.get()});
    }
    inside.close();
    const auto ready = waitUntilReady(outside);
    if (ready) return StartedService{door->address(), keeper};
    kill(keeper, SIGKILL);
    while (waitpid(keeper, nullptr, 0) < 0 && errno == EINTR) continue;
    return tl::make_unexpected(ready.error());
}

}  // namespace vxtv
