#include "platform/home_data_control.h"

#include "virtual_tv/platform/passage.h"

using namespace vxtv;

CHomeDataControlAPI* CHomeDataControlAPI::GetInstance() {
    CHomeDataControlAPI* const none = nullptr;
    return absent("CHomeDataControlAPI::GetInstance", {}, none);
}

void CHomeDataControlAPI::Destroy() {}

bool CHomeDataControlAPI::CopyCloneDataTVtoUSB(std::string directory, std::string option) {
    return absent("CHomeDataControlAPI::CopyCloneDataTVtoUSB",
                  {named("directory", directory), named("option", option)}, false);
}

bool CHomeDataControlAPI::CopyCloneDataUSBtoTV(std::string directory, std::string option) {
    return absent("CHomeDataControlAPI::CopyCloneDataUSBtoTV",
                  {named("directory", directory), named("option", option)}, false);
}
