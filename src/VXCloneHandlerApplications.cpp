// The data of cooperating applications. Not cloned yet: nothing is done and nothing is reported.

#include "VXCloneHandler.h"

bool VXCloneHandler::m_VXHotelFirstScreenDataClone() {
    return false;
}

void VXCloneHandler::m_GetMsgPortAppsName(std::vector<std::string>&) {}

bool VXCloneHandler::m_LaunchOrvelAppForClone() {
    return false;
}
