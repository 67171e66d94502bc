#pragma once

#include <functional>
#include <string>

#include "virtual_tv/applications/application_launch.h"
#include "virtual_tv/base/error.h"
#include "virtual_tv/store/folder.h"

namespace vxtv {

/// Runs the application and stays with it to its end: notes start and end in the television's log, and each
/// line that it prints. `report` is told its process, or why there is none; then it returns. Signals that end
/// a program and requests of other processes are passed on to the application, whose descendants do not
/// outlive it; killed itself, the host takes it along.
/// When the application runs already, an attached host stays to its end all the same: in a session that is
/// there for the application, the session itself may have started it first. Before: the process has one
/// thread, and no children.
void hostApplication(const Folder& folder, const std::string& id, HostWay way,
                     const std::function<void(const Result<pid_t>&)>& report);

}  // namespace vxtv
