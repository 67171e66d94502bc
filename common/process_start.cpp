#include "common/process_start.h"

#include <fcntl.h>
#include <unistd.h>

#include <csignal>

namespace vxcommon {

void startProcess() {
    // open(2) returns the lowest free number, so the closed descriptors are filled in order.
    int opened = -1;
    do {
        opened = open("/dev/null", O_RDONLY);
    } while (opened >= 0 && opened <= STDERR_FILENO);
    if (opened > STDERR_FILENO) {
        close(opened);
    }
    // Programs that we start would inherit SIG_IGN, but not a handler.
    struct sigaction harmless {};
    harmless.sa_handler = [](int /*signal*/) {};
    harmless.sa_flags = SA_RESTART;
    sigaction(SIGXFSZ, &harmless, nullptr);
}

}  // namespace vxcommon
