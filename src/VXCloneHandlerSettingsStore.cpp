// Typed access to the settings store.

#include "VXCloneHandler.h"
#include "VXCloneResources.h"
#include "platform/vconf.h"

bool VXCloneHandler::m_GetVConfBool(const std::string& key, int& value) {
    return vconf_get_bool(key.c_str(), &value) == 0;
}

bool VXCloneHandler::m_SetVConfBool(const std::string& key, int value) {
    return vconf_set_bool(key.c_str(), value) == 0;
}

bool VXCloneHandler::m_GetVConfString(std::string key, std::string& value) {
    const VXCloneString text(vconf_get_str(key.c_str()));
    value = text == nullptr ? "" : text.get();
    return text != nullptr;
}

bool VXCloneHandler::m_SetVConfString(std::string key, std::string value) {
    return vconf_set_str(key.c_str(), value.c_str()) == 0;
}

bool VXCloneHandler::m_GetVConfInt(std::string key, int& value) {
    return vconf_get_int(key.c_str(), &value) == 0;
}

bool VXCloneHandler::m_SetVConfInt(std::string key, int value) {
    return vconf_set_int(key.c_str(), value) == 0;
}
