#include "platform/home_data_control.h"

#include "virtual_tv/platform/passage.h"
#include "virtual_tv/services/value_services.h"
#include "virtual_tv/store/data_service.h"

using namespace vxtv;

namespace {

bool hasHomeData(const Television& television) {
    return television.database()
        .read([](SQLite::Database& connection) {
            return requireDataService(connection, homeDataService().name);
        })
        .has_value();
}

}  // namespace

CHomeDataControlAPI* CHomeDataControlAPI::GetInstance() {
    static CHomeDataControlAPI instance;
    CHomeDataControlAPI* const none = nullptr;
    return answer("CHomeDataControlAPI::GetInstance", {}, none,
                  [none](Television& television) { return hasHomeData(television) ? &instance : none; });
}

// Nothing to free: the object has no data, because all data belongs to the television.
void CHomeDataControlAPI::Destroy() {}

bool CHomeDataControlAPI::CopyCloneDataTVtoUSB(std::string directory, std::string option) {
    return answer("CHomeDataControlAPI::CopyCloneDataTVtoUSB",
                  {named("directory", directory), named("option", option)}, false,
                  [&directory, &option](Television& television) {
                      return option.empty() && backUpHomeData(television.database(), directory).has_value();
                  });
}

bool CHomeDataControlAPI::CopyCloneDataUSBtoTV(std::string directory, std::string option) {
    return answer("CHomeDataControlAPI::CopyCloneDataUSBtoTV",
                  {named("directory", directory), named("option", option)}, false,
                  [&directory, &option](Television& television) {
                      return option.empty() && restoreHomeData(television.database(), directory).has_value();
                  });
}
