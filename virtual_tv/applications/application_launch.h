#pragma once

#include <sys/types.h>

#include <string>

#include "virtual_tv/applications/application_home.h"
#include "virtual_tv/base/error.h"
#include "virtual_tv/store/folder.h"

namespace vxtv {

/// The environment variable with the bundle of an application's launch: a JSON object of strings. It is not
/// set without a bundle.
inline constexpr const char* kLaunchBundleVariable = "VXTV_LAUNCH_BUNDLE";

/// The parent program of each application. It holds the mark that the application runs, writes the
/// application's output to the television's log, and ends with it.
inline constexpr const char* kApplicationHost = "vxtv-app-host";

/// How the host runs. Its arguments are the television, the application, the descriptor for its report, and
/// one of these.
enum class HostWay {
    Detached,  ///< orphaned, so that its launcher need not collect it
    Attached   ///< stays the child that was started
};
const char* nameOf(HostWay way);

/// Reads the one report that the host sends to its launcher: the process of the application that was started
/// or already ran, or the reason why there is none.
Result<pid_t> readHostReport(int descriptor);
void writeHostReport(int descriptor, const Result<pid_t>& report);

/// Starts the application in the television's home, or in the caller's session if there is no home. `bundle`
/// is a JSON object, or empty for none. An application that already runs is not started again and does not
/// get the bundle. Result: its process number in the namespace of the home. The process exists but need not
/// be ready. Errors: BadArgument for an invalid id, UnknownApplication, BadApplication, CannotRun, NoSpace,
/// Io. Threads: any; the caller may have other threads. The application inherits only the caller's
/// environment.
Result<pid_t> launchApplication(const Folder& folder, const std::string& id, const std::string& bundle);

/// Where an application is started.
enum class StartPlace {
    Home,  ///< in the television's home, which must exist
    Here   ///< among the caller's processes
};

/// Starts those of the television's applications that have `autostart` and do not run, without waiting for
/// them. Failures are written to the television's log.
void startAutostartApplications(const Folder& folder, StartPlace place);

/// Starts the host of an application as a process of the caller, for the sender of the request. Errors:
/// CannotRun.
Result<void> startHost(const Folder& folder, const HomeRequest& request);

}  // namespace vxtv
