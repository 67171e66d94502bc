// The data of cooperating applications. Only the applications themselves can save and load it.

#include <string>
#include <vector>

#include "VXCloneHandler.h"
#include "VXCloneKeys.h"
#include "VXCloneLog.h"
#include "VXClonePaths.h"
#include "VXCloneResources.h"
#include "VxMessagePortAPI.h"
#include "platform/aul.h"
#include "platform/vconf.h"

bool VXCloneHandler::m_VXHotelFirstScreenDataClone() {
    std::vector<std::string> applications;
    m_GetMsgPortAppsName(applications);
    bool result = false;
    for (const std::string& application : applications) {
        VX_LOGF(Debug, "SendMessage : appName [%s]", application.c_str());
        if (m_ecloneType == kDirectionBackup) {
            result = VxMessagePortAPI::Backup(application.c_str());
        } else if (m_ecloneType == kDirectionRestore) {
            result = VxMessagePortAPI::Restore(application.c_str());
        }
        m_AppendCloneResultVConf(result ? 1 : 0, VXCLONE_VXHOTEL_FIRSTSCREEN_DATA);
    }
    // This is the outcome of the last application only. The result list has the outcome of each.
    return result;
}

void VXCloneHandler::m_GetMsgPortAppsName(std::vector<std::string>& applications) {
    if (m_LaunchOrvelAppForClone()) {
        applications.emplace_back(kOrvelApplication);
    }
    const VXCloneString firstScreen(vconf_get_str(kFirstScreenKey));
    if (firstScreen) {
        applications.emplace_back(firstScreen.get());
    }
}

bool VXCloneHandler::m_LaunchOrvelAppForClone() {
    VX_LOG(Debug, "Launching Orvel App for Clone");
    if (aul_app_is_running(kOrvelApplication) == 1) {
        VX_LOG(Error, "Orvel-app already running!!!");
        return true;
    }
    const VXCloneBundle arguments(bundle_create());
    bundle_add(arguments.get(), "mode", "clone");
    if (m_ecloneType == kDirectionBackup) {
        bundle_add(arguments.get(), kRequestKey, kRequestBackup);
    } else if (m_ecloneType == kDirectionRestore) {
        bundle_add(arguments.get(), kRequestKey, kRequestRestore);
    }
    bundle_add(arguments.get(), kPathKey, kCloneDirectoryWithSlash);
    if (aul_launch_app(kOrvelApplication, arguments.get()) < 1) {
        VX_LOGF(Fatal, "Fail to aul_launch_app(%s) !!!!", kOrvelApplication);
        return false;
    }
    VX_LOGF(Error, "Success to aul_launch_app(%s) ....", kOrvelApplication);
    return true;
}
