// The stored navigation lists. Not cloned yet: nothing is done and nothing is reported.

#include "VXCloneHandler.h"

bool VXCloneHandler::m_ResetMyChannelNavigation() {
    return false;
}
