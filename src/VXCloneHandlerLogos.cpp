// Boot logo, set-top box icons and home menu. Not cloned yet: nothing is done and nothing is reported.

#include "VXCloneHandler.h"

bool VXCloneHandler::m_HospitalityLogoClone() {
    return false;
}

bool VXCloneHandler::m_MBRLogoClone() {
    return false;
}

bool VXCloneHandler::m_SetMBRCutomIcon() {
    return false;
}

bool VXCloneHandler::m_VXHotelHomeAppDataClone() {
    return false;
}
