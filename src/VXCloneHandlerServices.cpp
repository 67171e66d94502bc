// Categories that a service of the television clones. Not cloned yet: nothing is done and nothing is
// reported.

#include "VXCloneHandler.h"

bool VXCloneHandler::m_FactorySettingsClone() {
    return false;
}

bool VXCloneHandler::m_AudioVideoSettingsClone() {
    return false;
}

bool VXCloneHandler::m_HomeDataControlClone() {
    return false;
}

bool VXCloneHandler::m_WasAPIClone() {
    return false;
}

bool VXCloneHandler::m_BroadcastTVSClone() {
    return false;
}

bool VXCloneHandler::m_SettingsDataClone() {
    return false;
}

bool VXCloneHandler::m_BroadcastIPGDataClone() {
    return false;
}

bool VXCloneHandler::m_VXTVTimerDataClone() {
    return false;
}
