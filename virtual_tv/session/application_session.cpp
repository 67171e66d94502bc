#include "virtual_tv/session/application_session.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <unistd.h>

#include <array>
#include <exception>

#include "common/plain_reason.h"
#include "virtual_tv/applications/application_launch.h"
#include "virtual_tv/base/descriptor.h"
#include "virtual_tv/base/shipped_files.h"
#include "virtual_tv/session/session.h"
#include "virtual_tv/television/television.h"

namespace vxtv {

namespace {

constexpr int kReport = 3;

/// Drops the caller's terminal, directory and descriptors. The report's descriptor becomes kReport, which
/// started programs inherit.
void becomeIndependent(int report) {
    setsid();
    const int null = open("/dev/null", O_RDWR | O_CLOEXEC);
    for (const int standard : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        dup2(null, standard);
    }
    const int kept = fcntl(report, F_DUPFD_CLOEXEC, kReport + 1);
    dup2(kept, kReport);
    close_range(kReport + 1, ~0U, 0);
    if (chdir("/") != 0) {
        _exit(1);
    }
}

Result<void> runSession(const std::filesystem::path& television, const std::string& id) {
    SessionWish wish;
    wish.television = television;
    auto session = Session::open(wish);
    VX_RETURN_IF_FAILED(session);
    const auto outcome =
        session->run({shippedProgram(kApplicationHost).string(), absoluteFolder(television).string(), id,
                      std::to_string(kReport), nameOf(HostWay::Attached)});
    VX_RETURN_IF_FAILED(outcome);
    return outcome->complaint.empty() ? Result<void>() : failure(ErrorCode::CannotRun, outcome->complaint);
}

[[noreturn]] void becomeSession(const std::filesystem::path& television, const std::string& id, int report) {
    becomeIndependent(report);
    try {
        if (const auto ran = runSession(television, id); !ran) {
            writeHostReport(kReport, tl::make_unexpected(ran.error()));
        }
    } catch (const std::exception& exception) {
        writeHostReport(kReport,
                        failure(ErrorCode::CannotRun, fmt::format("cannot start a session: {}; try again",
                                                                  vxcommon::plainReason(exception))));
    }
    _exit(0);
}

}  // namespace

Result<pid_t> startInOwnSession(const std::filesystem::path& television, const std::string& id) {
    const auto folder = absoluteFolder(television);
    std::array<int, 2> pipe{};
    if (pipe2(pipe.data(), O_CLOEXEC) != 0) {
        return failure(ErrorCode::CannotRun, fmt::format("cannot start a session: {}", reason()));
    }
    const Descriptor report(pipe[0]);
    Descriptor reporting(pipe[1]);
    const pid_t child = fork();
    if (child < 0) {
        return failure(ErrorCode::CannotRun,
                       fmt::format("cannot start a session: {}; end other programs", reason()));
    }
    if (child == 0) {
        becomeSession(folder, id, reporting.get());
    }
    reporting.close();
    return readHostReport(report.get());
}

}  // namespace vxtv
