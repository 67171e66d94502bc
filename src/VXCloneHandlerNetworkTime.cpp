// Network time: puts the restored settings into effect.

#include <string>

#include "VXCloneHandler.h"
#include "VXCloneKeys.h"
#include "VXCloneLog.h"
#include "platform/vx_system_info.h"

namespace network = VXSystemAPI::nsVXSystemInfoAPI;

namespace {

/// Intended: a mode of 0 means that network time is on.
constexpr int kModeOn = 0;

/// The zone that takes effect if the television reports success but does not name a zone.
constexpr auto kUnfilledZone = static_cast<VX_TIMEZONE>(90);

#define VX_TEXT_REFUSED(operation) "Fail to VXSystemAPI::nsVXSystemInfoAPI::" operation "(ErrStat:%d)!!!!"

/// Puts zone and server into effect. It ends at the first failure. Result: whether both were accepted. Logs
/// in the name of `function`.
bool areSet(const char* function, VX_TIMEZONE zone, const std::string& server) {
    VX_LOG_AS(function, Debug, "NTP mode is on, so call system API");
    if (const int status = network::SetTimezoneInfo(zone); status != 0) {
        VX_LOGF_AS(function, Error, VX_TEXT_REFUSED("SetTimezoneInfo"), status);
        return false;
    }
    VX_LOGF_AS(function, Debug, "Server URL is : %s", server.c_str());
    if (const int status = network::SetNTPServerAddr(server.c_str()); status != 0) {
        VX_LOGF_AS(function, Error, VX_TEXT_REFUSED("SetNTPServerAddr"), status);
        return false;
    }
    return true;
}

}  // namespace

bool VXCloneHandler::m_NTP_Settings_Clone() {
    const auto reported = [this](bool success) {
        m_AppendCloneResultVConf(success, VXCLONE_NTP_SETTINGS_DATA);
        return success;
    };
    if (m_ecloneType != kDirectionRestore) {
        // A backup has nothing to do, because the values are in the settings snapshot.
        return reported(m_ecloneType == kDirectionBackup);
    }

    bool supported = false;
    if (const int status = network::CheckNTPSupport(supported); status != 0) {
        VX_LOGF(Error, VX_TEXT_REFUSED("CheckNTPSupport"), status);
        return reported(false);
    }
    if (!supported) {
        VX_LOG(Error, "NTP is not Supported ");
        return reported(true);
    }

    int mode = kModeOn;
    if (!m_GetVConfInt(kNtpModeKey, mode)) {
        VX_LOG(Error, "GET VCONF [ntp_mode] FAILED!!!");
        return reported(false);
    }
    const bool on = mode == kModeOn;
    if (on) {
        VX_LOG(Debug, "NTP mode is on");
    }
    if (const int status = network::SetNTPMode(on); status != 0) {
        VX_LOGF(Error, VX_TEXT_REFUSED("SetNTPMode"), status);
        return reported(false);
    }
    if (!on) {
        VX_LOG(Debug, "NTP mode is off, no need to call system API");
        return reported(true);
    }

    // Intended: reads this television's own zone and sets it again. The package's zone is restored with the
    // settings.
    VX_TIMEZONE zone = kUnfilledZone;
    if (const int status = network::GetCurrentTimezone(zone); status != 0) {
        VX_LOGF(Error, VX_TEXT_REFUSED("GetCurrentTimezone"), status);
        return reported(false);
    }
    std::string server;
    if (!m_GetVConfString(kNtpServerKey, server)) {
        VX_LOG(Error, "GET VCONF [server_url] FAILED!!!");
        return reported(false);
    }
    return reported(areSet(__func__, zone, server));
}
