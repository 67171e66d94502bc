#include "cloning_app/run/clone_engine.h"

#include <exception>
#include <string>
#include <system_error>

namespace vxclone {

namespace {

tl::unexpected<Error> brokeOff(const std::string& why) {
    return failure(ErrorCode::Internal,
                   "the clone library broke off: " + why + "; restart the television and try again");
}

}  // namespace

Result<void> callLibrary(const std::function<int()>& call, bool endsByThrowing) {
    try {
        if (call() == 0) {
            return brokeOff("it could not start");
        }
        return {};
    } catch (const std::system_error& error) {
        // A thread that was never started cannot be joined: this is the end of a finished restore.
        if (endsByThrowing && error.code() == std::errc::invalid_argument) {
            return {};
        }
        return brokeOff(error.what());
    } catch (const std::exception& error) {
        return brokeOff(error.what());
    } catch (...) {
        return brokeOff("for an unknown reason");
    }
}

}  // namespace vxclone
