#include "cloning_app/commands/stop_signals.h"

#include <csignal>

namespace vxclone {

namespace {

StopFlag stopFlag;

extern "C" void raiseStopFlag(int signal) {
    stopFlag.raise(signal);
}

extern "C" void passOver(int /*signal*/) {}

void handle(int signal, void (*handler)(int)) {
    struct sigaction action {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    sigaction(signal, &action, nullptr);
}

}  // namespace

const StopFlag& heedStopSignals() {
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        handle(signal, raiseStopFlag);
    }
    // Not SIG_IGN, which the applications that the television starts would inherit.
    handle(SIGPIPE, passOver);
    return stopFlag;
}

}  // namespace vxclone
