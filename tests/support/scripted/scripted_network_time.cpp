#include "platform/vx_system_info.h"
#include "tests/support/scripted/answering.h"

using namespace vxtest;

namespace VXSystemAPI {
namespace nsVXSystemInfoAPI {

// For an out value, its initial value is recorded as the argument.

int CheckNTPSupport(bool& supported) {
    return answered("nsVXSystemInfoAPI::CheckNTPSupport", fmt::format("{}", supported), [&] {
        supported = platform().locked([](ScriptedPlatform::State& state) { return state.takesNetworkTime; });
        return 0;
    });
}

int SetNTPMode(bool on) {
    return answered("nsVXSystemInfoAPI::SetNTPMode", fmt::format("{}", on), [] { return 0; });
}

int GetCurrentTimezone(VX_TIMEZONE& timezone) {
    return answered("nsVXSystemInfoAPI::GetCurrentTimezone", std::to_string(timezone), [&] {
        timezone = static_cast<VX_TIMEZONE>(
            platform().locked([](ScriptedPlatform::State& state) { return state.timezone; }));
        return 0;
    });
}

int SetTimezoneInfo(VX_TIMEZONE timezone) {
    return answered("nsVXSystemInfoAPI::SetTimezoneInfo", std::to_string(timezone), [&] {
        platform().locked([&](ScriptedPlatform::State& state) { state.timezone = timezone; });
        return 0;
    });
}

int SetNTPServerAddr(const char* address) {
    return answered("nsVXSystemInfoAPI::SetNTPServerAddr", quoted(address), [] { return 0; });
}

}  // namespace nsVXSystemInfoAPI
}  // namespace VXSystemAPI
