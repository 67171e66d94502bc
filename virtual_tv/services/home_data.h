#pragma once

#include <filesystem>

#include "virtual_tv/store/database.h"

namespace vxtv {

/// Writes the home data into the folder. A missing folder is created if its parent exists. Errors: those of
/// `ServiceValues::backUp`, NotABackupFile if it is not a folder of its own.
Result<void> backUpHomeData(Database& database, const std::filesystem::path& folder);

/// Loads the home data from the folder. Errors: those of `ServiceValues::restore`, NotABackupFile.
Result<void> restoreHomeData(Database& database, const std::filesystem::path& folder);

}  // namespace vxtv
