#include "cloning_app/verbs/stop_signals.h"

#include <unistd.h>

#include <array>
#include <atomic>
#include <csignal>
#include <sstream>
#include <string>

#include "cloning_app/report/json_lines.h"

namespace vxclone {

namespace {

constexpr std::array kStopSignals = {SIGINT, SIGTERM, SIGHUP};

StopFlag stopFlag;

/// The message for the end by a signal. It is prepared, because a signal handler must not allocate.
struct Farewell {
    int status = 0;
    std::string text;
};

std::array<Farewell, kStopSignals.size()> farewells;
int farewellOutput = STDERR_FILENO;
std::atomic<bool> farewellIsDue = false;
static_assert(std::atomic<bool>::is_always_lock_free);

extern "C" void raiseStopFlag(int signal) {
    stopFlag.raise(signal);
}

extern "C" void endAtOnce(int signal) {
    const Farewell* farewell = farewells.data();
    for (std::size_t index = 0; index < kStopSignals.size(); ++index) {
        farewell = kStopSignals[index] == signal ? &farewells[index] : farewell;
    }
    if (farewellIsDue.exchange(false) &&
        write(farewellOutput, farewell->text.data(), farewell->text.size()) < 0) {
        // Nobody can be told about a failure here; the status shows it.
    }
    _exit(farewell->status);
}

extern "C" void passOver(int /*signal*/) {}

std::string textOf(const Error& error, bool json) {
    std::ostringstream text;
    if (json) {
        JsonLines(text).error(error);
    } else {
        vxcommon::Writer(text).line(vxcommon::printable("vxclone: " + error.sentence));
    }
    return text.str();
}

void handle(int signal, void (*handler)(int)) {
    struct sigaction action {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    sigaction(signal, &action, nullptr);
}

}  // namespace

const StopFlag& heedStopSignals() {
    for (const int signal : kStopSignals) {
        handle(signal, raiseStopFlag);
    }
    return stopFlag;
}

EndingAtStopSignals::EndingAtStopSignals(bool json) {
    farewellOutput = json ? STDOUT_FILENO : STDERR_FILENO;
    for (std::size_t index = 0; index < kStopSignals.size(); ++index) {
        const Error error = stopError(kStopSignals[index]);
        farewells[index] = {exitStatusOf(error.code), textOf(error, json)};
    }
    farewellIsDue = true;
    for (const int signal : kStopSignals) {
        handle(signal, endAtOnce);
    }
}

EndingAtStopSignals::~EndingAtStopSignals() {
    // A handler on another thread may be ending the process. Then this thread must not write any more.
    while (!farewellIsDue.exchange(false)) {
        pause();
    }
}

void surviveClosedOutput() {
    // The applications that the television starts would inherit SIG_IGN, but not a handler.
    handle(SIGPIPE, passOver);
}

}  // namespace vxclone
