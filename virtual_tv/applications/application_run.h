#pragma once

#include <sys/types.h>

#include <optional>
#include <string>

#include "virtual_tv/base/descriptor.h"
#include "virtual_tv/base/error.h"
#include "virtual_tv/store/folder.h"

namespace vxtv {

// An application that runs is known by a lock on a file in the television's run folder. The kernel drops it
// with the last process that holds it, however that ended, so the answer is right in every session and needs
// no process ids, which each session counts for itself. Asking takes no lock.

/// The lock of an application that is about to run, and the way for other processes to reach it. Held by the
/// application's host; the application inherits the lock's descriptor.
class RunningMark {
 public:
    /// Errors: Busy when the application runs already, NoSpace, Io.
    static Result<RunningMark> take(const Folder& folder, const std::string& id);
    RunningMark(RunningMark&&) = default;
    RunningMark& operator=(RunningMark&&) = delete;
    /// Gives it up, whoever else holds the descriptor.
    ~RunningMark();

    /// From now on the application counts as running.
    void tellProcess(pid_t process) const;
    /// To be kept open by the application.
    int lockDescriptor() const { return lock_.get(); }
    /// Readable when somebody has a signal for the application: a byte each.
    int requests() const { return requests_.get(); }

 private:
    RunningMark(std::filesystem::path lockFile, Descriptor lock);

    std::filesystem::path lockFile_;
    std::filesystem::path requestFile_;
    Descriptor lock_;
    Descriptor requests_;
};

/// The application's process as its own session counts it, or nothing when it does not run. An application
/// that is just being started does not run yet.
std::optional<pid_t> runningProcess(const Folder& folder, const std::string& id);

/// Waits until the application does not run; returns at once when it does not.
void waitForEnd(const Folder& folder, const std::string& id);

/// Ends the application, wherever it runs: asks it to, and kills it when it does not end soon. Returns when
/// it is gone. Errors: NotRunning, Io when it could not be ended.
Result<void> stopApplication(const Folder& folder, const std::string& id);

/// Removes what applications that do not run any more left in the run folder: those whose session was killed.
void removeStaleMarks(const Folder& folder);

}  // namespace vxtv
