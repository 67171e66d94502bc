#pragma once

#include <sys/types.h>

#include <filesystem>
#include <string>

#include "virtual_tv/base/error.h"

namespace vxtv {

/// Starts the application in an orphaned session of its own, which ends with it. Result: the application's
/// process number in that session, when it runs. This also holds for an application that already runs.
/// Errors: those of Session::open and of launchApplication. Before: the process has one thread.
Result<pid_t> startInOwnSession(const std::filesystem::path& television, const std::string& id);

}  // namespace vxtv
