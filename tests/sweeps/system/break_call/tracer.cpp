#include "tests/sweeps/system/break_call/tracer.h"

#include <elf.h>
#include <signal.h>
#include <sys/ptrace.h>
#include <sys/user.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <functional>
#include <sstream>
#include <string_view>

#include "tests/support/machine/exit_status.h"
#include "tests/sweeps/system/break_call/watched_calls.h"

namespace vxtest {

namespace {

constexpr int kSystemCallStop = SIGTRAP | 0x80;
constexpr unsigned kEventShift = 16;

/// The register with the third or the fifth argument of a system call.
unsigned long long& argumentOf(user_regs_struct& registers, std::size_t index) {
    return index == 2 ? registers.rdx : registers.r8;
}

bool isAtOrBelow(std::string_view path, std::string_view folder) {
    return path.starts_with(folder) && (path.size() == folder.size() || path[folder.size()] == '/');
}

void changeRegisters(pid_t thread, const std::function<void(user_regs_struct&)>& change) {
    user_regs_struct registers{};
    if (ptrace(PTRACE_GETREGS, thread, nullptr, &registers) == 0) {
        change(registers);
        ptrace(PTRACE_SETREGS, thread, nullptr, &registers);
    }
}

}  // namespace

Tracer::Tracer(BreakOrder order) : order_(std::move(order)), log_(order_.log) {}

bool Tracer::start(char** command) {
    std::array<int, 2> gate{};
    if (pipe(gate.data()) != 0) {
        return false;
    }
    process_ = fork();
    if (process_ == 0) {
        close(gate[1]);
        char opened = 0;
        const ssize_t got = read(gate[0], &opened, 1);
        close(gate[0]);
        if (got == 1) {
            execvp(command[0], command);
        }
        std::perror(command[0]);
        _exit(kCannotStart);
    }
    close(gate[0]);
    constexpr auto kOptions =
        PTRACE_O_TRACESYSGOOD | PTRACE_O_TRACECLONE | PTRACE_O_TRACEEXEC | PTRACE_O_EXITKILL;
    const bool traced = process_ > 0 && ptrace(PTRACE_SEIZE, process_, nullptr, kOptions) == 0 &&
                        ptrace(PTRACE_INTERRUPT, process_, nullptr, nullptr) == 0;
    const char open = 1;
    const bool opened = traced && write(gate[1], &open, 1) == 1;
    close(gate[1]);
    return opened;
}

std::optional<int> Tracer::run(char** command) {
    if (!start(command)) {
        return std::nullopt;
    }
    std::optional<int> ended;
    int status = 0;
    for (pid_t thread = 0; (thread = waitpid(-1, &status, __WALL)) > 0 || errno == EINTR;) {
        if (thread <= 0) {
            continue;
        }
        if (WIFSTOPPED(status)) {
            stopped(thread, status);
        } else if (thread == process_) {
            ended = exitStatusOf(status);
        }
    }
    if (order_.breakage == Breakage::None) {
        log_ << count_ << " calls\n";
    }
    return ended;
}

void Tracer::stopped(pid_t thread, int status) {
    int passedOn = 0;
    const int event = status >> kEventShift;
    if (WSTOPSIG(status) == kSystemCallStop) {
        systemCall(thread);
    } else if (event == PTRACE_EVENT_EXEC) {
        started_ = true;
        findLoader();
    } else if (event == 0) {
        passedOn = WSTOPSIG(status);
    }
    ptrace(PTRACE_SYSCALL, thread, nullptr, passedOn);
}

/// Finds the loader of shared libraries. Its calls do not count, because they do not belong to the program.
void Tracer::findLoader() {
    std::ifstream maps("/proc/" + std::to_string(process_) + "/maps");
    for (std::string line; std::getline(maps, line);) {
        if (line.find("/ld-linux") != std::string::npos) {
            std::istringstream text(line);
            std::uint64_t begin = 0;
            std::uint64_t end = 0;
            char dash = 0;
            text >> std::hex >> begin >> dash >> end;
            loaderBegin_ = loaderBegin_ == 0 ? begin : loaderBegin_;
            loaderEnd_ = end;
        }
    }
}

void Tracer::systemCall(pid_t thread) {
    __ptrace_syscall_info info{};
    if (ptrace(PTRACE_GET_SYSCALL_INFO, thread, sizeof info, &info) <= 0) {
        return;
    }
    const bool byTheLoader =
        info.instruction_pointer >= loaderBegin_ && info.instruction_pointer < loaderEnd_;
    if (info.op == PTRACE_SYSCALL_INFO_ENTRY && started_ && !byTheLoader) {
        entered(thread, info.entry.nr, info.entry.args);
    } else if (info.op == PTRACE_SYSCALL_INFO_EXIT) {
        if (const auto failing = failing_.extract(thread)) {
            changeRegisters(thread, [&failing](user_regs_struct& registers) {
                registers.rax = static_cast<std::uint64_t>(-static_cast<std::int64_t>(failing.mapped()));
            });
        }
    }
}

bool Tracer::counts(const std::vector<std::string>& paths) const {
    return order_.below.empty() || std::any_of(paths.begin(), paths.end(), [this](const std::string& path) {
               return std::any_of(order_.below.begin(), order_.below.end(),
                                  [&path](const auto& folder) { return isAtOrBelow(path, folder); });
           });
}

void Tracer::entered(pid_t thread, std::uint64_t number, const std::uint64_t* arguments) {
    const WatchedCall* const call = findWatchedCall(number);
    if (call == nullptr || (!order_.calls.empty() && order_.calls.count(call->name) == 0)) {
        return;
    }
    std::array<std::uint64_t, 6> given{};
    std::copy_n(arguments, given.size(), given.begin());
    const auto paths = pathsOf(*call, given, thread);
    if (!counts(paths)) {
        return;
    }
    ++count_;
    const bool chosen = count_ == order_.nth || (order_.fromThenOn && count_ > order_.nth);
    if (order_.breakage != Breakage::None && !chosen) {
        return;
    }
    log_ << count_ << ' ' << call->name;
    for (const std::string& path : paths) {
        log_ << ' ' << path;
    }
    log_ << std::endl;
    breakCall(thread, *call);
}

void Tracer::breakCall(pid_t thread, const WatchedCall& call) {
    switch (order_.breakage) {
        case Breakage::None:
            break;
        case Breakage::Interrupt:
            kill(process_, SIGINT);
            break;
        case Breakage::Kill:
            kill(process_, SIGKILL);
            break;
        case Breakage::Short:
            changeRegisters(thread, [&call](user_regs_struct& registers) {
                auto& bytes = argumentOf(registers, call.sizeArgument);
                bytes -= bytes / 2;
            });
            break;
        case Breakage::Error:
            failing_[thread] = order_.error;
            if (std::string_view(call.name) != "close") {
                changeRegisters(thread, [](user_regs_struct& registers) {
                    registers.orig_rax = static_cast<std::uint64_t>(-1);
                });
            }
            break;
    }
}

}  // namespace vxtest
