// Network time. Not cloned yet: nothing is done and nothing is reported.

#include "VXCloneHandler.h"

bool VXCloneHandler::m_NTP_Settings_Clone() {
    return false;
}
