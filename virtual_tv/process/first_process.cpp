#include "virtual_tv/process/first_process.h"

#include <fcntl.h>
#include <fmt/core.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/signalfd.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <fstream>
#include <optional>

#include "virtual_tv/process/program.h"

namespace vxtv {

namespace {

constexpr int kSignalBase = 128;
constexpr int kNotExecutable = 126;
constexpr int kNotFound = 127;

int exitStatus(int waited) {
    return WIFSIGNALED(waited) ? kSignalBase + WTERMSIG(waited) : WEXITSTATUS(waited);
}

Result<void> settle(const Job& job) {
    if (const int error = settleIn(job.isolation); error != 0) {
        return failure(ErrorCode::NoIsolation,
                       fmt::format("cannot keep the session's mounts apart: {}; try another --isolation",
                                   reason(error)));
    }
    if (job.isolation == Isolation::RealPaths) {
        // Without a process namespace, the session's orphans must be adopted to collect them.
        prctl(PR_SET_CHILD_SUBREAPER, 1);
    } else {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
    }
    return job.prepare();
}

[[noreturn]] void becomeCommand(const Job& job, const sigset_t& mask, const Terminal& terminal, int report) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (job.interactive) terminal.handToSelf();
    for (const auto& [name, value] : job.environment) setenv(name.c_str(), value.c_str(), 1);
    std::vector<char*> arguments;
    for (const auto& argument : job.command) arguments.push_back(const_cast<char*>(argument.c_str()));
    arguments.push_back(nullptr);
    sigprocmask(SIG_SETMASK, &mask, nullptr);
    execvp(arguments[0], arguments.data());
    const int error = errno;
    _exit(write(report, &error, sizeof error) == sizeof error ? 0 : kNotFound);
}

Message notStarted(const std::string& program, int error) {
    // If the PATH contains an unreadable directory, the system reports "permission denied" for every missing
    // program.
    const bool isSearched = program.find('/') == std::string::npos;
    if (!findProgram(program) && (isSearched || error == ENOENT || error == ENOTDIR)) {
        return {Message::Kind::NotStarted, kNotFound,
                fmt::format(
                    "there is no command '{}' in the television; give one that this machine has outside of "
                    "/opt, /tmp and /media, or in a folder of its own below them",
                    program)};
    }
    return {
        Message::Kind::NotStarted, error == ENOENT ? kNotFound : kNotExecutable,
        fmt::format("cannot run '{}': {}; see that it is a program, that you may execute it, and that its "
                    "interpreter is there",
                    program, reason(error))};
}

/// The command's process, or the reason why there is none.
tl::expected<pid_t, Message> start(const Job& job, const sigset_t& mask, const Terminal& terminal) {
    std::array<int, 2> pipe{};
    if (pipe2(pipe.data(), O_CLOEXEC) != 0)
        return tl::make_unexpected(notStarted(job.command.front(), errno));
    const Descriptor readEnd(pipe[0]);
    Descriptor writeEnd(pipe[1]);
    const pid_t command = fork();
    if (command < 0) return tl::make_unexpected(notStarted(job.command.front(), errno));
    if (command == 0) becomeCommand(job, mask, terminal, writeEnd.get());
    writeEnd.close();
    int error = 0;
    if (read(readEnd.get(), &error, sizeof error) != sizeof error) return command;
    waitpid(command, nullptr, 0);
    return tl::make_unexpected(notStarted(job.command.front(), error));
}

/// Collects all ended processes. Result: the command's exit status, if the command has ended.
std::optional<int> reap(pid_t command, bool continueStopped) {
    std::optional<int> ended;
    int status = 0;
    for (pid_t child = 0; (child = waitpid(-1, &status, WNOHANG | WUNTRACED)) > 0;) {
        // The shell that started vxtv does not see this stop, so nobody could continue the command.
        if (WIFSTOPPED(status) && child == command && continueStopped) kill(child, SIGCONT);
        if (!WIFSTOPPED(status) && child == command) ended = exitStatus(status);
    }
    return ended;
}

/// Follows the command until it ends. Result: its exit status; empty if the other end of the channel was
/// closed.
std::optional<int> follow(pid_t command, const Job& job, const MessageChannel& channel,
                          const Descriptor& children) {
    std::array<pollfd, 2> ready = {pollfd{channel.descriptor(), POLLIN, 0},
                                   pollfd{children.get(), POLLIN, 0}};
    while (true) {
        if (const auto ended = reap(command, job.interactive)) return ended;
        if (poll(ready.data(), ready.size(), -1) < 0) continue;
        if (ready[1].revents != 0) {
            signalfd_siginfo drained{};
            if (read(children.get(), &drained, sizeof drained) < 0) return std::nullopt;
        }
        if (ready[0].revents == 0) continue;
        const auto message = channel.receive();
        if (!message) return std::nullopt;
        kill(command, message->number);
    }
}

/// All orphans of the session are adopted by this process, so they all become its children sooner or later.
void killAllChildren() {
    do {
        std::ifstream children("/proc/thread-self/children");
        for (pid_t child = 0; children >> child;) kill(child, SIGKILL);
    } while (waitpid(-1, nullptr, 0) > 0 || errno == EINTR);
}

}  // namespace

void runFirstProcess(const Job& job, const MessageChannel& channel, const sigset_t& mask,
                     const Terminal& terminal) {
    sigset_t childEnded;
    sigemptyset(&childEnded);
    sigaddset(&childEnded, SIGCHLD);
    sigprocmask(SIG_BLOCK, &childEnded, nullptr);
    const Descriptor children(signalfd(-1, &childEnded, SFD_CLOEXEC));
    if (const auto settled = settle(job); !settled) {
        channel.send(
            {Message::Kind::Failed, static_cast<int>(settled.error().code), settled.error().sentence});
        _exit(0);
    }
    if (const auto command = start(job, mask, terminal)) {
        const auto status = follow(*command, job, channel, children);
        if (job.isolation == Isolation::RealPaths) killAllChildren();
        channel.send({Message::Kind::Ended, status.value_or(kSignalBase + SIGKILL), {}});
    } else {
        channel.send(command.error());
    }
    _exit(0);
}

}  // namespace vxtv
