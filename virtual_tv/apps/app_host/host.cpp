#include "virtual_tv/apps/app_host/host.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <poll.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/signalfd.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <optional>
#include <vector>

#include "platform/dlog.h"
#include "virtual_tv/applications/application_run.h"
#include "virtual_tv/applications/applications.h"
#include "virtual_tv/apps/app_host/line_reader.h"
#include "virtual_tv/base/descriptor.h"
#include "virtual_tv/calls/dlog_file.h"

namespace vxtv {

namespace {

constexpr int kCannotRun = 127;
constexpr int kPauseMs = 2;
constexpr int kPatienceMs = 5000;
constexpr int kFirstWordMs = 200;
constexpr std::array kPassedOn = {SIGTERM, SIGINT, SIGHUP, SIGQUIT, SIGUSR1, SIGUSR2};

struct Pipe {
    Descriptor out;
    Descriptor in;
};

Pipe makePipe(int flags) {
    std::array<int, 2> ends = {-1, -1};
    static_cast<void>(pipe2(ends.data(), flags | O_CLOEXEC));
    return {Descriptor(ends[0]), Descriptor(ends[1])};
}

/// The data for starting the application.
struct Start {
    std::string id;
    std::string program;
    std::filesystem::path folder;
    std::vector<std::string> arguments;
};

/// In the child: never returns.
[[noreturn]] void becomeApplication(const Start& start, int output, int lock, int report, pid_t host) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() != host) {
        _exit(kCannotRun);
    }
    setpgid(0, 0);
    signal(SIGPIPE, SIG_DFL);
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
    setenv(kApplicationIdVariable, start.id.c_str(), 1);
    std::vector<char*> arguments = {const_cast<char*>(start.program.c_str())};
    for (const std::string& argument : start.arguments) {
        arguments.push_back(const_cast<char*>(argument.c_str()));
    }
    arguments.push_back(nullptr);
    const bool isReady = chdir(start.folder.c_str()) == 0 && dup2(output, STDOUT_FILENO) >= 0 &&
                         dup2(output, STDERR_FILENO) >= 0 && fcntl(lock, F_SETFD, 0) == 0;
    if (isReady) {
        execv(start.program.c_str(), arguments.data());
    }
    const int error = errno;
    [[maybe_unused]] const ssize_t told = write(report, &error, sizeof error);
    _exit(kCannotRun);
}

/// The application's process, if its program could be started.
Result<pid_t> startApplication(const Start& start, const Descriptor& output, int lock) {
    Pipe failed = makePipe(0);
    const pid_t host = getpid();
    const pid_t child = failed.in ? fork() : -1;
    if (child == 0) {
        becomeApplication(start, output.get(), lock, failed.in.get(), host);
    }
    int error = errno;
    if (child > 0) {
        failed.in.close();
        if (read(failed.out.get(), &error, sizeof error) != sizeof error) {
            return child;
        }
        waitpid(child, nullptr, 0);
    }
    return failure(ErrorCode::CannotRun,
                   fmt::format("the application {} cannot be started: {}: {}; see that it is a program that "
                               "you may run",
                               start.id, start.program, reason(error)));
}

std::string describeEnd(int status) {
    return WIFSIGNALED(status) ? fmt::format("ended by signal {}", WTERMSIG(status))
                               : fmt::format("ended with status {}", WEXITSTATUS(status));
}

/// Blocks the signals that would end this process, and makes them readable from a descriptor.
Descriptor readSignals() {
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGCHLD);
    for (const int number : kPassedOn) {
        sigaddset(&signals, number);
    }
    sigprocmask(SIG_BLOCK, &signals, nullptr);
    return Descriptor(signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK));
}

void passSignalsOn(int signals, pid_t application) {
    signalfd_siginfo signal{};
    while (read(signals, &signal, sizeof signal) == sizeof signal) {
        if (signal.ssi_signo != SIGCHLD) {
            kill(application, static_cast<int>(signal.ssi_signo));
        }
    }
}

void passRequestsOn(int requests, pid_t application) {
    char request = 0;
    while (read(requests, &request, 1) == 1) {
        if (request == SIGTERM || request == SIGKILL) {
            kill(application, request);
        }
    }
}

/// Passes signals and output on until the application has ended. Result: its exit status.
int follow(pid_t application, int signals, int requests, int output, LineReader& lines) {
    std::array<pollfd, 3> ready = {pollfd{signals, POLLIN, 0}, pollfd{requests, POLLIN, 0},
                                   pollfd{output, POLLIN, 0}};
    int status = 0;
    while (waitpid(application, &status, WNOHANG) == 0) {
        if (poll(ready.data(), ready.size(), -1) < 0) {
            continue;
        }
        passSignalsOn(signals, application);
        passRequestsOn(requests, application);
        if (ready[2].revents != 0 && !lines.readFrom(output)) {
            ready[2].fd = -1;
        }
    }
    return status;
}

Result<Start> prepare(const Folder& folder, const std::string& id) {
    const Applications applications(folder);
    return applications.find(id).and_then([&](const ApplicationManifest& manifest) {
        return programOf(manifest, applications.folderOf(id)).map([&](const std::filesystem::path& program) {
            return Start{.id = id,
                         .program = program.string(),
                         .folder = applications.folderOf(id),
                         .arguments = manifest.arguments};
        });
    });
}

/// The mark, or the process of an application that already runs. If an application is just starting or
/// ending, this waits until it runs or has ended.
Result<pid_t> takeMark(const Folder& folder, const std::string& id, std::optional<RunningMark>& mark) {
    for (int waited = 0;; waited += kPauseMs) {
        auto taken = RunningMark::take(folder, id);
        if (taken) {
            mark.emplace(std::move(*taken));
            return 0;
        }
        const auto process = runningProcess(folder, id);
        if (process) {
            return *process;
        }
        if (taken.error().code != ErrorCode::Busy || waited >= kPatienceMs) {
            return tl::make_unexpected(taken.error());
        }
        poll(nullptr, 0, kPauseMs);
    }
}

/// Waits for a short time until the application has written something or ended. An application writes when it
/// is ready. If the launch returned earlier, its caller would look for a port that does not exist yet.
void awaitFirstWord(const Descriptor& output, const Descriptor& signals) {
    std::array<pollfd, 2> ready = {pollfd{output.get(), POLLIN, 0}, pollfd{signals.get(), POLLIN, 0}};
    poll(ready.data(), ready.size(), kFirstWordMs);
}

/// Serves the application until it ends.
void stayWith(pid_t application, std::optional<RunningMark>& mark, int signals, const Descriptor& output,
              const std::string& id, DlogFile& log) {
    LineReader lines([&log, &id](std::string_view line) { log.append(DLOG_INFO, id, line); });
    const int status = follow(application, signals, mark->requests(), output.get(), lines);
    mark.reset();
    kill(-application, SIGKILL);
    lines.readFrom(output.get());
    lines.finish();
    log.append(DLOG_INFO, id, describeEnd(status));
}

}  // namespace

void hostApplication(const Folder& folder, const std::string& id, HostWay way,
                     const std::function<void(const Result<pid_t>&)>& report) {
    const Result<Start> start = prepare(folder, id);
    if (!start) {
        return report(tl::make_unexpected(start.error()));
    }
    std::optional<RunningMark> mark;
    const Result<pid_t> other = takeMark(folder, id, mark);
    if (!mark) {
        report(other);
        return other && way == HostWay::Attached ? waitForEnd(folder, id) : void();
    }
    const Descriptor signals = readSignals();
    Pipe output = makePipe(O_NONBLOCK);
    fcntl(output.in.get(), F_SETFL, 0);
    const Result<pid_t> application = startApplication(*start, output.in, mark->lockDescriptor());
    output.in.close();
    DlogFile log(folder.dlog());
    if (!application) {
        log.append(DLOG_ERROR, id, application.error().sentence);
        return report(application);
    }
    log.append(DLOG_INFO, id, fmt::format("started as process {}", *application));
    mark->tellProcess(*application);
    awaitFirstWord(output.out, signals);
    report(application);
    stayWith(*application, mark, signals.get(), output.out, id, log);
}

}  // namespace vxtv
