#pragma once

#include <filesystem>
#include <functional>
#include <string>

#include "virtual_tv/apps/hotel_app/data_folder.h"
#include "virtual_tv/base/error.h"

namespace vxtv::hotel {

/// Called in the middle of writing or loading a package, so that tests can let the application die there.
using Halfway = std::function<void()>;

/// Writes all data of the application into a folder with the application's name in `where`, and replaces an
/// existing one. The package appears completely or not at all, and is flushed. A crash may leave a hidden
/// folder, which the next backup removes. Errors: BadArgument if `where` is not a folder or the data is
/// larger than a package may be; DamagedBackup for a foreign database; NoSpace, Io.
Result<void> writePackage(const DataFolder& data, const std::filesystem::path& where,
                          const std::string& application, const Halfway& halfway);

/// Replaces the application's data by the package in `where`, completely or not at all, after checking
/// everything in it. The package may be untrusted: no link in it is followed, and nothing can block. Errors:
/// NoBackupFile, NotABackupFile, OtherVersion, OtherService, DamagedBackup, NoSpace, Io.
Result<void> loadPackage(const DataFolder& data, const std::filesystem::path& where,
                         const std::string& application, const Halfway& halfway);

}  // namespace vxtv::hotel
