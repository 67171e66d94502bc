#include "cloning_app/run/clone_engine.h"

#include <exception>
#include <string>
#include <system_error>

#include "common/terminal_table.h"

namespace vxclone {

namespace {

tl::unexpected<Error> brokeOff(const std::string& why) {
    return failure(ErrorCode::Internal, "the clone library broke off: " + vxcommon::printable(why) +
                                            "; restart the television and try again");
}

}  // namespace

Result<int> askLibrary(const std::function<int()>& call) {
    try {
        return call();
    } catch (const std::exception& error) {
        return brokeOff(error.what());
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
    if (!answer) {
        return tl::make_unexpected(answer.error());
    }
    if (*answer == 0) {
        return brokeOff("it could not start");
    }
    return {};
}

}  // namespace vxclone
