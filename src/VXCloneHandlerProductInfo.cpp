// What kind of television a package came from. Not available yet: every operation fails.

#include "VXCloneHandler.h"

namespace {

/// 0 would say that the package fits.
constexpr int kNotJudged = -1;

}  // namespace

int VXCloneHandler::WriteDataToFile(std::string path) {
    return m_WriteCloneData(path);
}

int VXCloneHandler::CheckDataValidity(std::string path) {
    return m_ReadCloneData(path);
}

int VXCloneHandler::m_WriteCloneData(std::string) {
    return 0;
}

int VXCloneHandler::m_ReadCloneData(std::string) {
    return kNotJudged;
}

std::string VXCloneHandler::GetFileContent(std::ifstream&) {
    return {};
}
