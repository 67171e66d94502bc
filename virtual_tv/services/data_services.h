#pragma once

#include <vector>

#include "virtual_tv/store/data_service.h"

namespace vxtv {

/// All there are, in the order in which a television is compared. The one place that lists them.
const std::vector<DataService>& dataServices();

/// Null when there is no service of that name.
const DataService* findDataService(std::string_view name);

/// Makes the tables of the services that `sections` names, and notes which these are. Throws as
/// DataService::create does.
void createDataServices(SQLite::Database& connection, const std::map<std::string, nlohmann::json>& sections,
                        const std::filesystem::path& profileFolder);

}  // namespace vxtv
