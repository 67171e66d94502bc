// The parent process of one application of a virtual television; see
// virtual_tv/applications/application_launch.h.

#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <charconv>
#include <cstring>
#include <exception>
#include <string_view>

#include "common/plain_reason.h"
#include "common/writer.h"
#include "virtual_tv/applications/application_launch.h"
#include "virtual_tv/apps/app_host/host.h"
#include "virtual_tv/base/descriptor.h"

namespace {

constexpr int kArguments = 5;
constexpr int kWrongCall = 2;

/// Continues in an orphaned child.
void detach() {
    if (fork() != 0) {
        _exit(0);
    }
    // An application must not keep its launcher's working directory in use.
    if (chdir("/") != 0) {
        _exit(1);
    }
}

int host(const char* television, const char* id, vxtv::HostWay way, int report) {
    bool isRunning = false;
    {
        vxtv::Descriptor channel(report);
        fcntl(report, F_SETFD, FD_CLOEXEC);
        vxtv::hostApplication(vxtv::Folder(television), id, way, [&](const vxtv::Result<pid_t>& result) {
            isRunning = result.has_value();
            vxtv::writeHostReport(channel.get(), result);
            channel.close();
        });
    }
    return isRunning ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
    int report = -1;
    if (argc != kArguments ||
        std::from_chars(argv[3], argv[3] + std::strlen(argv[3]), report).ec != std::errc()) {
        vxcommon::standardError().line(
            "vxtv-app-host: this program is started by the platform; use `vxtv app start`");
        return kWrongCall;
    }
    const bool isDetached = argv[4] == std::string_view(vxtv::nameOf(vxtv::HostWay::Detached));
    if (isDetached) {
        detach();
    }
    // A launcher that does not wait for the report has closed its end of the pipe.
    signal(SIGPIPE, SIG_IGN);
    try {
        return host(argv[1], argv[2], isDetached ? vxtv::HostWay::Detached : vxtv::HostWay::Attached, report);
    } catch (const std::exception& exception) {
        vxcommon::standardError().line("vxtv-app-host: cannot host " + vxcommon::printable(argv[2]) + ": " +
                                       vxcommon::plainReason(exception) +
                                       "; start it again with: vxtv app start DIR ID");
        return 1;
    }
}
