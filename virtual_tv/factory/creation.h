#pragma once

#include <filesystem>

#include "virtual_tv/base/error.h"
#include "virtual_tv/factory/profile.h"
#include "virtual_tv/television/television.h"

namespace vxtv {

/// Makes a television in the new folder `path` and opens it. It is built under another name and appears
/// completely or not at all. Only if the process dies meanwhile, a hidden folder stays beside it.
///
/// Errors: AlreadyExists, BadArgument for a missing parent folder, NoSpace, Io.
Result<Television> createTelevision(const std::filesystem::path& path, const Profile& profile);

}  // namespace vxtv
