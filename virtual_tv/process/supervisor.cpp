#include "virtual_tv/process/supervisor.h"

#include <fmt/core.h>
#include <poll.h>
#include <signal.h>
#include <sys/signalfd.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <optional>

#include "virtual_tv/base/descriptor.h"
#include "virtual_tv/process/first_process.h"
#include "virtual_tv/process/message_channel.h"
#include "virtual_tv/process/terminal.h"

namespace vxtv {

namespace {

constexpr std::array kPassedOn = {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGUSR1, SIGUSR2};

/// While it exists, the signals to pass on are read from a descriptor instead of being delivered.
class SignalReader {
 public:
    SignalReader() {
        sigset_t passedOn;
        sigemptyset(&passedOn);
        for (const int number : kPassedOn) sigaddset(&passedOn, number);
        sigprocmask(SIG_BLOCK, &passedOn, &before_);
        reader_ = Descriptor(signalfd(-1, &passedOn, SFD_CLOEXEC | SFD_NONBLOCK));
    }
    SignalReader(const SignalReader&) = delete;
    SignalReader& operator=(const SignalReader&) = delete;
    ~SignalReader() {
        // A signal that arrived at the end of the command has no receiver any more. If it were delivered, it
        // would end this process before the session is cleaned up.
        signalfd_siginfo unread{};
        while (read(reader_.get(), &unread, sizeof unread) == sizeof unread) continue;
        sigprocmask(SIG_SETMASK, &before_, nullptr);
    }

    const sigset_t& before() const { return before_; }
    int descriptor() const { return reader_.get(); }
    /// The next signal to pass on. Signals that the terminal sends are skipped, because the kernel sends them
    /// to the command as well.
    std::optional<int> next() const {
        signalfd_siginfo signal{};
        if (read(reader_.get(), &signal, sizeof signal) != sizeof signal || signal.ssi_code == SI_KERNEL) {
            return std::nullopt;
        }
        return static_cast<int>(signal.ssi_signo);
    }

 private:
    sigset_t before_{};
    Descriptor reader_;
};

std::optional<Message> follow(const MessageChannel& channel, const SignalReader& signals) {
    std::array<pollfd, 2> ready = {pollfd{channel.descriptor(), POLLIN, 0},
                                   pollfd{signals.descriptor(), POLLIN, 0}};
    while (true) {
        if (poll(ready.data(), ready.size(), -1) < 0) continue;
        if (ready[0].revents != 0) return channel.receive();
        if (const auto signal = signals.next()) channel.send({Message::Kind::Signal, *signal, {}});
    }
}

void waitFor(pid_t process) {
    while (waitpid(process, nullptr, 0) < 0 && errno == EINTR) continue;
}

Result<Outcome> outcomeOf(const std::optional<Message>& last) {
    if (!last) {
        return failure(ErrorCode::CannotRun,
                       "the session's first process was killed from outside; start the session again");
    }
    if (last->kind == Message::Kind::Failed) return failure(static_cast<ErrorCode>(last->number), last->text);
    return Outcome{last->number, last->text};
}

}  // namespace

Result<Outcome> supervise(const Job& job) {
    const Terminal terminal;
    const SignalReader signals;
    auto [outside, inside] = MessageChannel::makePair();
    const pid_t first = outside ? forkInto(job.isolation) : -1;
    if (first < 0) {
        return failure(ErrorCode::NoIsolation,
                       fmt::format("cannot start a process for the session: {}; end other programs, or try "
                                   "another --isolation",
                                   reason()));
    }
    if (first == 0) {
        outside.close();
        runFirstProcess(job, inside, signals.before(), terminal);
    }
    inside.close();
    const auto last = follow(outside, signals);
    waitFor(first);
    return outcomeOf(last);
}

}  // namespace vxtv
