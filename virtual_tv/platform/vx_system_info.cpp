#include "platform/vx_system_info.h"

#include "virtual_tv/platform/passage.h"
#include "virtual_tv/platform/statuses.h"
#include "virtual_tv/services/network_time.h"

using namespace vxtv;

namespace {

/// Answers with the part of the state that `take(state)` returns.
template <class Take>
int answerFromState(KnownCall call, Take take) {
    return answer(call, {}, kFailed, [&take](Television& television) {
        return serviceStatus(NetworkTime(television.database()).state().map(take));
    });
}

}  // namespace

namespace VXSystemAPI::nsVXSystemInfoAPI {

int CheckNTPSupport(bool& supported) {
    return answerFromState("nsVXSystemInfoAPI::CheckNTPSupport",
                           [&supported](const NetworkTime::State& state) { supported = state.supported; });
}

int SetNTPMode(bool on) {
    return answer(
        "nsVXSystemInfoAPI::SetNTPMode", {number("on", on ? 1 : 0)}, kFailed,
        [on](Television& television) { return serviceStatus(NetworkTime(television.database()).setOn(on)); });
}

int GetCurrentTimezone(VX_TIMEZONE& timezone) {
    return answerFromState("nsVXSystemInfoAPI::GetCurrentTimezone",
                           [&timezone](const NetworkTime::State& state) {
                               timezone = static_cast<VX_TIMEZONE>(state.timezone);
                           });
}

int SetTimezoneInfo(VX_TIMEZONE timezone) {
    return answer("nsVXSystemInfoAPI::SetTimezoneInfo", {number("timezone", timezone)}, kFailed,
                  [timezone](Television& television) {
                      return serviceStatus(NetworkTime(television.database()).setTimezone(timezone));
                  });
}

int SetNTPServerAddr(const char* address) {
    return answer("nsVXSystemInfoAPI::SetNTPServerAddr", {secret("address", address)}, kFailed,
                  [address](Television& television) {
                      const NetworkTime networkTime(television.database());
                      return serviceStatus(address != nullptr
                                               ? networkTime.setServer(address)
                                               : failure(ErrorCode::BadArgument, "no server was given"));
                  });
}

}  // namespace VXSystemAPI::nsVXSystemInfoAPI
