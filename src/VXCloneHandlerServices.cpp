// Categories that a service of the television clones. Each service has its own rule for success. The log text
// and the success rule disagree for some services; the code follows the rule.

#include <string>

#include "VXCloneHandler.h"
#include "VXCloneKeys.h"
#include "VXCloneLog.h"
#include "VXClonePaths.h"
#include "platform/avoc.h"
#include "platform/factory_clone.h"
#include "platform/home_data_control.h"
#include "platform/settings_data_clone.h"
#include "platform/tv_service.h"
#include "platform/tvtimer.h"
#include "platform/was_clone.h"

bool VXCloneHandler::m_FactorySettingsClone() {
    if (m_ecloneType == kDirectionBackup) {
        const int status = factory_clone_tv_to_usb();
        VX_LOGF(Error, "FactoryCloneTvToUsb [status:%d]", status);
    } else if (m_ecloneType == kDirectionRestore) {
        const int status = factory_clone_usb_to_tv();
        VX_LOGF(Error, "FactoryCloneUsbToTv [status:%d]", status);
    }
    // Intended: always a failure. The service's status is logged but not evaluated.
    m_AppendCloneResultVConf(false, VXCLONE_FACTORY_SETTINGS);
    return false;
}

bool VXCloneHandler::m_AudioVideoSettingsClone() {
    bool success = false;
    if (m_ecloneType == kDirectionBackup) {
        const int status = avoc_backup_all_settings(kCloneDirectory);
        VX_LOGF(Error, "avoc_backup_all_settings [status:%d]-->**0 is Success**", status);
        success = status == 0;
    } else if (m_ecloneType == kDirectionRestore) {
        const int status = avoc_restore_all_settings(kCloneDirectory);
        VX_LOGF(Error, "avoc_restore_all_settings() [status:%d]-->**1 is Success**", status);
        success = status == 0;
    }
    m_AppendCloneResultVConf(success, VXCLONE_AV_SETTINGS);
    return success;
}

bool VXCloneHandler::m_HomeDataControlClone() {
    bool success = false;
    if (CHomeDataControlAPI* const service = CHomeDataControlAPI::GetInstance(); service != nullptr) {
        if (m_ecloneType == kDirectionBackup) {
            success = service->CopyCloneDataTVtoUSB(kHomeDataEntry, "");
            VX_LOGF(Error, "HomeDataControl:CopyCloneDataTVtoUSB [status:%d]-->**1 is Success**", success);
        } else if (m_ecloneType == kDirectionRestore) {
            success = service->CopyCloneDataUSBtoTV(kHomeDataEntry, "");
            VX_LOGF(Error, "HomeDataControl:CopyCloneDataUSBtoTV [status:%d]-->**1 is Success**", success);
        }
        CHomeDataControlAPI::Destroy();
    }
    m_AppendCloneResultVConf(success, VXCLONE_HOME_INTERNAL_API_DATA);
    return success;
}

bool VXCloneHandler::m_WasAPIClone() {
    bool success = false;
    if (m_ecloneType == kDirectionBackup) {
        const int status = was_clone_backup();
        VX_LOGF(Error, "was_clone_backup [status:%d]-->**0 is Success**", status);
        success = status == 0;
    } else if (m_ecloneType == kDirectionRestore) {
        const int status = was_clone_restore();
        VX_LOGF(Error, "was_clone_restore [status:%d]-->**0 is Success**", status);
        success = status == 0;
    }
    m_AppendCloneResultVConf(success, VXCLONE_WAS_API_DATA);
    // Intended: false even after a success. Only the result list has the outcome.
    return false;
}

bool VXCloneHandler::m_BroadcastTVSClone() {
    bool success = false;
    IUtil* util = nullptr;
    TVServiceAPI::CreateUtil(&util);
    if (util != nullptr) {
        IB2BControl* control = nullptr;
        TVServiceAPI::CreateB2BControl(&control);
        if (m_ecloneType == kDirectionBackup) {
            // The results of both exports are ignored, because a television may have no hotel channel list.
            util->ExportChannelMap(kChannelMapDirectory);
            if (control != nullptr) {
                control->ExportChannelMap(kChannelMapDirectory);
            }
            VX_LOGF(Error, "TVSChannelMap _BackUp success %s", kChannelMapDirectory);
            success = true;
        } else if (m_ecloneType == kDirectionRestore && m_IsDataFileExist(kChannelMapArchive)) {
            VX_LOG(Error, "tvs-chms exists - Invoke Restore");
            if (util->ImportChannelMap(kChannelMapDirectory) != 0) {
                m_ResetMyChannelNavigation();
            }
            // Intended: always a success, whatever the import returned.
            VX_LOGF(Error, "TVSChannelMap _Restore success %s", kChannelMapDirectory);
            success = true;
        }
    }
    m_AppendCloneResultVConf(success, VXCLONE_BROADCAST_TVS);
    return success;
}

bool VXCloneHandler::m_SettingsDataClone() {
    int status = 0;
    if (m_ecloneType == kDirectionBackup) {
        status = SettingsDataCloneAPI::BackupSettingsData(kCloneDirectoryWithSlash);
        VX_LOGF(Error, " SettingsDataClone Status: %d", status);
    } else if (m_ecloneType == kDirectionRestore) {
        // Both parts are always loaded, and only the later one decides.
        status = SettingsDataCloneAPI::RestoreSettingsData(kCloneDirectoryWithSlash,
                                                           SettingsDataCloneAPI::EARLY_RESTORE);
        VX_LOGF(Error, " RestoreSettingsData EARLY_RESTORE : [%d]", status);
        status = SettingsDataCloneAPI::RestoreSettingsData(kCloneDirectoryWithSlash,
                                                           SettingsDataCloneAPI::LATER_RESTORE);
        VX_LOGF(Error, " RestoreSettingsData LATER_RESTORE : [%d]", status);
        VX_LOGF(Error, " SettingsDataClone Status: %d", status);
    }
    const bool success = status != 0;
    m_AppendCloneResultVConf(success, VXCLONE_SETTINGS_DATA);
    return success;
}

bool VXCloneHandler::m_BroadcastIPGDataClone() {
    // The category exists only for its place in the order. It has no service and reports nothing.
    return false;
}

bool VXCloneHandler::m_VXTVTimerDataClone() {
    bool success = false;
    if (m_ecloneType == kDirectionBackup || m_ecloneType == kDirectionRestore) {
        if (!m_CreateDir(kTimerDirectory)) {
            // The service is called anyway and reports itself what is missing.
            VX_LOG(Error, "Failed to create dir TV_TIMER!!");
        }
        const int status = m_ecloneType == kDirectionBackup ? tvtimer_get_db(kTimerDirectory)
                                                            : tvtimer_set_db(kTimerDirectory);
        VX_LOGF(Error, "TVTimer Status (0 Is Success) : [%d]", status);
        success = status == 0;
    }
    m_AppendCloneResultVConf(success, VXCLONE_VXTV_TIMER_DATA);
    return success;
}
