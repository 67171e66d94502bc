#pragma once

#include <sys/types.h>

#include <filesystem>
#include <string>

#include "virtual_tv/base/error.h"

namespace vxtv {

/// Starts the application in a session of its own, which ends with it and belongs to nobody. Result: the
/// application's process as that session counts it, when it runs; of one that runs already, too. Errors:
/// those of Session::open and of launchApplication.
/// Before: the process has one thread.
Result<pid_t> startInOwnSession(const std::filesystem::path& television, const std::string& id);

}  // namespace vxtv
