#include "tests/support/machine/terminal.h"

#include <poll.h>
#include <pty.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>

#include "tests/support/machine/exit_status.h"

namespace vxtest {

namespace {

constexpr unsigned short kRows = 24;

[[noreturn]] void become(const Program& program) {
    for (const auto& [name, value] : program.environment) setenv(name.c_str(), value.c_str(), 1);
    std::vector<char*> arguments;
    for (const auto& argument : program.command) arguments.push_back(const_cast<char*>(argument.c_str()));
    arguments.push_back(nullptr);
    execvp(arguments[0], arguments.data());
    _exit(kCannotStart);
}

}  // namespace

Terminal::Terminal(const Program& program, unsigned short columns)
    : deadline_(std::chrono::steady_clock::now() + program.timeLimit) {
    const winsize size{kRows, columns, 0, 0};
    process_ = forkpty(&master_, nullptr, nullptr, &size);
    if (process_ < 0) {
        std::perror("cannot start a program at a terminal");
        std::abort();
    }
    if (process_ == 0) become(program);
}

Terminal::~Terminal() {
    if (process_ > 0) {
        kill(process_, SIGKILL);
        while (waitpid(process_, nullptr, 0) < 0 && errno == EINTR) continue;
    }
    close(master_);
}

bool Terminal::waitFor(const std::string& wanted) {
    while (text_.find(wanted) == std::string::npos) {
        if (!readMore()) return false;
    }
    return true;
}

void Terminal::type(const std::string& keys) const {
    if (write(master_, keys.data(), keys.size()) != static_cast<ssize_t>(keys.size())) {
        std::perror("cannot type at the terminal");
    }
}

int Terminal::wait() {
    while (readMore()) continue;
    if (std::chrono::steady_clock::now() >= deadline_) kill(process_, SIGKILL);
    int status = 0;
    while (waitpid(process_, &status, 0) < 0 && errno == EINTR) continue;
    process_ = -1;
    return exitStatusOf(status);
}

/// False if no process has the terminal open any more, or the time is over.
bool Terminal::readMore() {
    const auto left =
        std::chrono::ceil<std::chrono::milliseconds>(deadline_ - std::chrono::steady_clock::now());
    if (left.count() <= 0) return false;
    pollfd ready{master_, POLLIN, 0};
    if (poll(&ready, 1, static_cast<int>(left.count())) <= 0) return errno == EINTR;
    std::array<char, 4096> chunk;
    const ssize_t length = read(master_, chunk.data(), chunk.size());
    if (length <= 0) return false;
    text_.append(chunk.data(), static_cast<std::size_t>(length));
    return true;
}

}  // namespace vxtest
