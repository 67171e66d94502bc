#pragma once

#include <filesystem>

#include "virtual_tv/base/error.h"
#include "virtual_tv/factory/profile.h"
#include "virtual_tv/television/television.h"

namespace vxtv {

/// Makes a television in the new folder `path` and opens it. It is built beside and appears whole or not at
/// all; only the death of this process on the way leaves something, a hidden folder beside.
///
/// Errors: AlreadyExists, BadArgument for a missing parent folder, NoSpace, Io.
Result<Television> createTelevision(const std::filesystem::path& path, const Profile& profile);

}  // namespace vxtv
