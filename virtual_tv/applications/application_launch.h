#pragma once

#include <sys/types.h>

#include <string>

#include "virtual_tv/applications/application_home.h"
#include "virtual_tv/base/error.h"
#include "virtual_tv/store/folder.h"

namespace vxtv {

/// The environment variable in which an application finds the bundle that it was launched with: a JSON object
/// of strings. It is not set when there is none.
inline constexpr const char* kLaunchBundleVariable = "VXTV_LAUNCH_BUNDLE";

/// The program that is an application's parent: it keeps the mark that the application runs, writes its
/// output to the television's log, and ends with it.
inline constexpr const char* kApplicationHost = "vxtv-app-host";

/// How the host is called: the television, the application, the descriptor for its report, and one of these.
enum class HostWay {
    Detached,  ///< belongs to nobody, so that its launcher need not collect it
    Attached   ///< stays the process that was started
};
const char* nameOf(HostWay way);

/// What the host tells its launcher, once: the process of the application that runs now or did already, or
/// why there is none.
Result<pid_t> readHostReport(int descriptor);
void writeHostReport(int descriptor, const Result<pid_t>& report);

/// Starts the application in the television's home, and in the caller's session when there is no home, with
/// the bundle as a JSON object, or with none when the text is empty; one that runs already is left alone and
/// does not get the bundle. Result: its process as the home counts it, which is there but need not be ready.
/// Errors: BadArgument for what is no id, UnknownApplication, BadApplication, CannotRun, NoSpace, Io.
/// Threads: any; the caller may have others. Nothing of the caller's but its environment reaches the
/// application.
Result<pid_t> launchApplication(const Folder& folder, const std::string& id, const std::string& bundle);

/// Where an application is started.
enum class StartPlace {
    Home,  ///< in the television's home, which is there
    Here   ///< among the caller's processes
};

/// Starts those of the television's applications that want it and do not run, and does not wait for them.
/// What cannot be started is told in the television's log.
void startAutostartApplications(const Folder& folder, StartPlace place);

/// Starts the host of an application among the caller's processes, for whoever asks. Errors: CannotRun.
Result<void> startHost(const Folder& folder, const HomeRequest& request);

}  // namespace vxtv
