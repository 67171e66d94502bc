#pragma once

#include <filesystem>
#include <functional>
#include <string>

#include "virtual_tv/apps/hotel_app/data_folder.h"
#include "virtual_tv/base/error.h"

namespace vxtv::hotel {

/// Called when about half of a package is written or loaded, for an application that is told to die there.
using Halfway = std::function<void()>;

/// Writes all of the application's data into a folder of the application's name in `where`, in the place of
/// one that is there: whole or not at all, and flushed. What a crash leaves is a hidden folder, which the
/// next backup removes. Errors: BadArgument when `where` is no folder or the data is larger than a package
/// may be, DamagedBackup for a database that is not ours, NoSpace, Io.
Result<void> writePackage(const DataFolder& data, const std::filesystem::path& where,
                          const std::string& application, const Halfway& halfway);

/// Replaces the application's data by that of the package in `where`: whole or not at all, after everything
/// in it was checked. The package may come from anybody; no link in it is followed, and nothing waits.
/// Errors: NoBackupFile, NotABackupFile, OtherVersion, OtherService, DamagedBackup, NoSpace, Io.
Result<void> loadPackage(const DataFolder& data, const std::filesystem::path& where,
                         const std::string& application, const Halfway& halfway);

}  // namespace vxtv::hotel
