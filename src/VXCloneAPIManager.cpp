#include "VXCloneAPIManager.h"

#include <new>

#include "VXCloneHandler.h"
#include "VXCloneLog.h"

VXCloneAPIManager::VXCloneAPIManager() {
    CreateCloneInterface();
}

VXCloneAPIManager::~VXCloneAPIManager() = default;

void VXCloneAPIManager::CreateCloneInterface() {
    m_cloneInterface.reset(new (std::nothrow) VXCloneHandler());
}

VXCloneInterface* VXCloneAPIManager::GetCloneInterface() {
    return m_cloneInterface.get();
}

void VXCloneAPIManager::GetCloneDataOrder(const std::vector<VXClone>& list) {
    VX_TRACE();
    auto& order = const_cast<std::vector<VXClone>&>(list);
    for (int value = VXCLONE_FACTORY_SETTINGS; value <= VXCLONE_NTP_SETTINGS_DATA; ++value) {
        order.push_back(static_cast<VXClone>(value));
    }
}
