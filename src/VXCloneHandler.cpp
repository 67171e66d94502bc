#include "VXCloneHandler.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <string>
#include <thread>

#include "VXCloneKeys.h"
#include "VXCloneLog.h"
#include "platform/system_info.h"
#include "platform/tvtimer.h"

std::int32_t VXCloneHandler::m_ecloneType = kDirectionBackup;

namespace {

/// Whether the two network-backed categories take part. False if the feature cannot be read.
bool hasNetworkSupport() {
    int value = 0;
    return system_info_get_custom_int(kNetworkSupportFeature, &value) == 0 && value != 0;
}

}  // namespace

int VXCloneHandler::BackupCloneData() {
    VX_TRACE();
    if (tvtimer_init() < 0) {
        VX_LOG(Error, VX_TEXT_NO_TIMERS);
    }
    m_ecloneType = kDirectionBackup;
    m_SetVConfString(kCloneResultKey, "");
    m_CleanTVCloneDirectory();

    const auto cloneApplications = [this] {
        VX_LOG(Error, "Thread created for cloning App data's");
        m_VXHotelFirstScreenDataClone();
    };
    std::thread applications(cloneApplications);

    m_FactorySettingsClone();
    m_AudioVideoSettingsClone();
    if (hasNetworkSupport()) {
        m_HomeDataControlClone();
        m_WasAPIClone();
    } else {
        VX_LOG(Error, VX_TEXT_NETWORK_SKIPPED);
    }
    m_VCONFDataClone();
    m_BroadcastTVSClone();
    m_SettingsDataClone();
    m_VXTVTimerDataClone();
    m_VXHotelHomeAppDataClone();
    m_NTP_Settings_Clone();

    VX_LOG(Debug, "Waiting till App data is cloned successfully");
    applications.join();

    std::string results;
    m_GetVConfString(kCloneResultKey, results);
    VX_LOGF(Error, "Clone_BackUP status : \n{-----------------------\n%s\n-----------------------}\n",
            results.c_str());
    return 1;
}

/// How a restore loads one category.
struct VXCloneHandler::RestoreRow {
    VXClone category;
    bool (VXCloneHandler::*cloner)();
    bool needsNetwork;
};

const VXCloneHandler::RestoreRow* VXCloneHandler::m_FindRestoreRow(VXClone category) {
    static constexpr RestoreRow kRows[] = {
        {VXCLONE_FACTORY_SETTINGS, &VXCloneHandler::m_FactorySettingsClone, false},
        {VXCLONE_AV_SETTINGS, &VXCloneHandler::m_AudioVideoSettingsClone, false},
        {VXCLONE_HOME_INTERNAL_API_DATA, &VXCloneHandler::m_HomeDataControlClone, true},
        {VXCLONE_WAS_API_DATA, &VXCloneHandler::m_WasAPIClone, true},
        {VXCLONE_VCONF_DATA, &VXCloneHandler::m_VCONFDataClone, false},
        {VXCLONE_BROADCAST_TVS, &VXCloneHandler::m_BroadcastTVSClone, false},
        {VXCLONE_SETTINGS_DATA, &VXCloneHandler::m_SettingsDataClone, false},
        {VXCLONE_BROADCAST_IPG_DATA, &VXCloneHandler::m_BroadcastIPGDataClone, false},
        {VXCLONE_VXTV_TIMER_DATA, &VXCloneHandler::m_VXTVTimerDataClone, false},
        {VXCLONE_HOSPITALITY_LOGO, &VXCloneHandler::m_HospitalityLogoClone, false},
        {VXCLONE_VXHOTEL_HOMEAPP_DATA, &VXCloneHandler::m_VXHotelHomeAppDataClone, false},
        {VXCLONE_VXHOTEL_MBR_LOGO, &VXCloneHandler::m_MBRLogoClone, false},
        {VXCLONE_NTP_SETTINGS_DATA, &VXCloneHandler::m_NTP_Settings_Clone, false},
    };
    const auto* const row =
        std::find_if(std::begin(kRows), std::end(kRows),
                     [category](const RestoreRow& each) { return each.category == category; });
    return row == std::end(kRows) ? nullptr : row;
}

int VXCloneHandler::RestoreCloneData(const std::vector<VXClone>& list) {
    VX_TRACE();
    if (tvtimer_init() < 0) {
        VX_LOG(Error, VX_TEXT_NO_TIMERS " ");
    }
    m_ecloneType = kDirectionRestore;
    m_SetVConfString(kCloneResultKey, "");
    const bool networkSupport = hasNetworkSupport();
    if (!networkSupport) {
        VX_LOG(Error, VX_TEXT_NETWORK_SKIPPED);
    }
    if (list.empty()) {
        VX_LOG(Error, "eCloneData size error");
        return 0;
    }

    std::thread applications;
    if (std::find(list.begin(), list.end(), VXCLONE_VXHOTEL_FIRSTSCREEN_DATA) != list.end()) {
        applications = std::thread([this] {
            VX_LOG(Error, "Thread created for cloning App's data");
            m_VXHotelFirstScreenDataClone();
        });
    }

    std::size_t handled = 0;
    for (const VXClone category : list) {
        const RestoreRow* const row = m_FindRestoreRow(category);
        if (category == VXCLONE_VXHOTEL_FIRSTSCREEN_DATA) {
            VX_LOG(Error, "Cloning App data , Already Handled~!!!");
        } else if (row == nullptr) {
            // Intended: the ambient application's data comes here, too, because it has no restore.
            VX_LOG(Error, "Wrong data passed in eCloneData");
        } else if (networkSupport || !row->needsNetwork) {
            (this->*row->cloner)();
        }
        ++handled;
        m_updateProgressVconf(static_cast<int>(100 * handled / list.size()));
    }

    // Intended: without application data in the list there is no thread, so join throws std::system_error.
    // Callers recognise a partial restore by this exception.
    applications.join();

    std::string results;
    m_GetVConfString(kCloneResultKey, results);
    VX_LOGF(Error, "Clone_Restore status : \n{-----------------------\n%s\n-----------------------}\n",
            results.c_str());
    return 1;
}
