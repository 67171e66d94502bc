// Progress and the result list.

#include <array>
#include <cstddef>

#include "VXCloneHandler.h"
#include "VXCloneKeys.h"
#include "VXCloneLog.h"
#include "VXCloneResources.h"
#include "platform/vconf.h"

namespace {

/// The names in the result list, indexed by the category's value.
constexpr std::array kCategoryNames = {
    "VXCLONE_FACTORY_SETTINGS",
    "VXCLONE_AV_SETTINGS",
    "VXCLONE_HOME_INTERNAL_API_DATA",
    "VXCLONE_WAS_API_DATA",
    "VXCLONE_VCONF_DATA",
    "VXCLONE_BROADCAST_TVS",
    "VXCLONE_SETTINGS_DATA",
    "VXCLONE_BROADCAST_IPG_DATA",
    "VXCLONE_VXTV_TIMER_DATA",
    "VXCLONE_HOSPITALITY_LOGO",
    "VXCLONE_VXHOTEL_HOMEAPP_DATA",
    "VXCLONE_VXHOTEL_FIRSTSCREEN_DATA",
    "VXCLONE_VXHOTEL_MBR_LOGO",
    "VXCLONE_VXHOTEL_AMBIENT_APP_DATA",
    "VXCLONE_NTP_SETTINGS_DATA",
};

}  // namespace

void VXCloneHandler::m_updateProgressVconf(int percent) {
    VX_LOGF(Error, "Update Progress-%d", percent);
    if (vconf_set_int(kCloneProgressKey, percent) != 0) {
        VX_LOG(Error, "Unable to update Progress vconf value");
    }
}

std::string VXCloneHandler::m_GetVconfLogString(VXClone category) {
    const auto index = static_cast<std::size_t>(category);
    return index < kCategoryNames.size() ? kCategoryNames[index] : "";
}

bool VXCloneHandler::m_AppendCloneResultVConf(int status, VXClone category) {
    VX_LOG(Info, "");
    const VXCloneString list(vconf_get_str(kCloneResultKey));
    if (list == nullptr) {
        VX_LOGF(Error, "fail to get [%s]", kCloneResultKey);
        return false;
    }
    // Intended: the list is read, extended and written back without a lock. Two threads at the same moment
    // can lose an entry. Other processes see each entry at once.
    const std::string outcome = status != 0 ? "-SUCCESS" : "-FAIL";
    const std::string extended = list.get() + m_GetVconfLogString(category) + outcome + "\n";
    vconf_set_str(kCloneResultKey, extended.c_str());
    return true;
}
