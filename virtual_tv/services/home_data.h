#pragma once

#include <filesystem>

#include "virtual_tv/store/database.h"

namespace vxtv {

/// Writes the home data into the folder, which is made when it is not there; the one that it lies in must be.
/// Errors: those of `ServiceValues::backUp`, NotABackupFile for what is no folder of its own.
Result<void> backUpHomeData(Database& database, const std::filesystem::path& folder);

/// Takes the home data over from the folder. Errors: those of `ServiceValues::restore`, NotABackupFile.
Result<void> restoreHomeData(Database& database, const std::filesystem::path& folder);

}  // namespace vxtv
