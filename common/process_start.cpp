#include "common/process_start.h"

#include <fcntl.h>
#include <unistd.h>

#include <csignal>

namespace vxcommon {

void startProcess() {
    // The lowest free number is taken each time.
    int opened = -1;
    do {
        opened = open("/dev/null", O_RDONLY);
    } while (opened >= 0 && opened <= STDERR_FILENO);
    if (opened > STDERR_FILENO) {
        close(opened);
    }
    // Ignoring it would be inherited by every program that is started.
    struct sigaction harmless {};
    harmless.sa_handler = [](int /*signal*/) {};
    harmless.sa_flags = SA_RESTART;
    sigaction(SIGXFSZ, &harmless, nullptr);
}

}  // namespace vxcommon
