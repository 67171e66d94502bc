// The stored navigation lists. They no longer fit after another channel map was loaded.

#include <list>

#include "VXCloneHandler.h"
#include "VXCloneLog.h"
#include "platform/tv_service.h"

namespace {

/// The TV service's numbers of the entries that belong to a channel map. Other entries stay.
bool isBoundToChannelMap(const CCNavigationModeInfo& entry) {
    return entry.mode == 10 || entry.mode == 11;
}

constexpr TSTvMode ofAntenna(int mode) {
    return {static_cast<EAntennaMode>(mode), SERVICE_MODE_ALL};
}

constexpr TSTvMode ofService(int mode) {
    return {ANTENNA_MODE_ALL, static_cast<EServiceMode>(mode)};
}

/// The antennas and service modes for which an entry is removed, in this order.
constexpr TSTvMode kRemovals[] = {ofAntenna(0),  ofAntenna(1),  ofAntenna(2), ofService(3),
                                  ofService(16), ofService(19), ofService(20)};

}  // namespace

bool VXCloneHandler::m_ResetMyChannelNavigation() {
    VX_LOG(Error, "Removing ResetMyChannelNavigation");
    IServiceNavigation* navigation = nullptr;
    if (TVServiceAPI::CreateServiceNavigation(PROFILE_NAVIGATION, 0, &navigation) != 0) {
        VX_LOG(Error, "CreateServiceNavigation is failed!");
        return false;
    }
    CCCategoryUtil* const categories = CCCategoryUtil::GetInstance();
    std::list<CCNavigationModeInfo> entries;
    categories->GetNavigationList({ANTENNA_MODE_ALL, SERVICE_MODE_ALL}, entries);
    for (const CCNavigationModeInfo& entry : entries) {
        if (!isBoundToChannelMap(entry)) {
            continue;
        }
        for (const TSTvMode& mode : kRemovals) {
            VX_LOGF(Info, "Removing Navigation: ServiceMode [%d]", mode.serviceMode);
            if (!categories->RemoveNavigation(mode, entry)) {
                VX_LOG(Fatal, "RemoveNavigation Failed");
                return false;
            }
        }
    }
    return true;
}
