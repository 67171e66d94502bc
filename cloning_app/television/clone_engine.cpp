#include "cloning_app/television/clone_engine.h"

#include <exception>
#include <string>
#include <system_error>

#include "common/file_writing.h"
#include "common/plain_reason.h"

namespace vxclone {

namespace {

tl::unexpected<Error> brokeOff(const std::string& why) {
    return failure(ErrorCode::Internal,
                   "the clone library broke off: " + why + "; restart the television and try again");
}

tl::unexpected<Error> brokeOff(const std::exception& error) {
    const auto reason = vxcommon::systemReason(error);
    if (reason && vxcommon::meansNoRoom(*reason)) {
        return failure(ErrorCode::TelevisionFull,
                       "the clone library broke off: " + vxcommon::plainReason(error) +
                           "; free some space on the television's disk and try again");
    }
    return brokeOff(vxcommon::plainReason(error));
}

}  // namespace

Result<int> askLibrary(const std::function<int()>& call) {
    try {
        return call();
    } catch (const std::exception& error) {
        return brokeOff(error);
    } catch (...) {
        return brokeOff("for an unknown reason");
    }
}

Result<void> callLibrary(const std::function<int()>& call, bool endsByThrowing) {
    const auto answer = askLibrary([&call, endsByThrowing] {
        try {
            return call();
        } catch (const std::system_error& error) {
            // A thread that was never started cannot be joined: this is the end of a finished restore.
            if (endsByThrowing && error.code() == std::errc::invalid_argument) {
                return 1;
            }
            throw;
        }
    });
    VX_RETURN_IF_FAILED(answer);
    if (*answer == 0) {
        return brokeOff("it could not start");
    }
    return {};
}

}  // namespace vxclone
