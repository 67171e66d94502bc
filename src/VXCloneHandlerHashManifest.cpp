// The seal over a package. Not available yet: sealing and checking fail.

#include "VXCloneHandler.h"

int VXCloneHandler::CheckHashValidity(std::vector<std::string> files, int mode, char* path) {
    return m_checkHashValidity(files, mode, path);
}

int VXCloneHandler::m_checkHashValidity(std::vector<std::string>&, int, char*) {
    return 0;
}
