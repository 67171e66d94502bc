#include "platform/vx_system_info.h"

#include "virtual_tv/platform/passage.h"

using namespace vxtv;

namespace {

constexpr int kFailed = -1;

}  // namespace

namespace VXSystemAPI::nsVXSystemInfoAPI {

int CheckNTPSupport(bool& /*supported*/) {
    return absent("nsVXSystemInfoAPI::CheckNTPSupport", {}, kFailed);
}

int SetNTPMode(bool on) {
    return absent("nsVXSystemInfoAPI::SetNTPMode", {number("on", on ? 1 : 0)}, kFailed);
}

int GetCurrentTimezone(VX_TIMEZONE& /*timezone*/) {
    return absent("nsVXSystemInfoAPI::GetCurrentTimezone", {}, kFailed);
}

int SetTimezoneInfo(VX_TIMEZONE timezone) {
    return absent("nsVXSystemInfoAPI::SetTimezoneInfo", {number("timezone", timezone)}, kFailed);
}

int SetNTPServerAddr(const char* address) {
    return absent("nsVXSystemInfoAPI::SetNTPServerAddr", {secret("address", address)}, kFailed);
}

}  // namespace VXSystemAPI::nsVXSystemInfoAPI
