#pragma once

#include <functional>
#include <string>

#include "virtual_tv/applications/application_launch.h"
#include "virtual_tv/base/error.h"
#include "virtual_tv/store/folder.h"

namespace vxtv {

/// Runs the application and stays until it ends. Writes its start, its end and each line of its output to the
/// television's log. Calls `report` once, with the application's process number or the reason why there is
/// none. Signals that would end this process, and requests of other processes, are passed on to the
/// application. The application's descendants end with it. If the host is killed, the application ends, too.
/// If the application already runs, an attached host stays until its end, too: a session made for this
/// application may have started it first. Before: the process has one thread and no children.
void hostApplication(const Folder& folder, const std::string& id, HostWay way,
                     const std::function<void(const Result<pid_t>&)>& report);

}  // namespace vxtv
