#pragma once

#include <vector>

#include "virtual_tv/store/data_service.h"

namespace vxtv {

/// All services with data, in the order in which televisions are compared. This is the only list of them.
const std::vector<DataService>& dataServices();

/// Null if there is no service of that name.
const DataService* findDataService(std::string_view name);

/// Makes the tables of the services in `sections`, and records which services the television has. Throws as
/// DataService::create does.
void createDataServices(SQLite::Database& connection, const std::map<std::string, nlohmann::json>& sections,
                        const std::filesystem::path& profileFolder);

}  // namespace vxtv
