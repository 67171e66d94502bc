#pragma once

#include <filesystem>

#include "virtual_tv/services/value_service.h"
#include "virtual_tv/store/database.h"

namespace vxtv {

// The services that consist only of values. Each table defines the values of a service and their rules.

const ValueService& factoryService();
const ValueService& avService();
const ValueService& settingsService();
const ValueService& homeDataService();
const ValueService& webApplicationService();

/// Writes the home data into the folder. A missing folder is created if its parent exists. Errors: those of
/// `ServiceValues::backUp`, NotABackupFile if it is not a folder of its own.
Result<void> backUpHomeData(Database& database, const std::filesystem::path& folder);

/// Loads the home data from the folder. Errors: those of `ServiceValues::restore`, NotABackupFile.
Result<void> restoreHomeData(Database& database, const std::filesystem::path& folder);

}  // namespace vxtv
