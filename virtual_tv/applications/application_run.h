#pragma once

#include <sys/types.h>

#include <optional>
#include <string>

#include "virtual_tv/base/descriptor.h"
#include "virtual_tv/base/error.h"
#include "virtual_tv/store/folder.h"

namespace vxtv {

// A running application is recognised by a lock on a file in the television's run folder. The kernel releases
// the lock when the last process with it ends, for any reason. So the answer is right in every session. It
// needs no process numbers, which differ between sessions. A query does not take the lock.

/// The lock of an application that is about to run, and the pipe for requests of other processes. The
/// application's host holds it, and the application inherits the lock's descriptor.
class RunningMark {
 public:
    /// Errors: Busy if the application already runs, NoSpace, Io.
    static Result<RunningMark> take(const Folder& folder, const std::string& id);
    RunningMark(RunningMark&&) = default;
    RunningMark& operator=(RunningMark&&) = delete;
    /// Releases the lock, even if other processes have the descriptor.
    ~RunningMark();

    /// Writes the process number. From now on the application counts as running.
    void tellProcess(pid_t process) const;
    /// The application must keep this descriptor open.
    int lockDescriptor() const { return lock_.get(); }
    /// Readable if somebody sends the application a signal: one byte each.
    int requests() const { return requests_.get(); }

 private:
    RunningMark(std::filesystem::path lockFile, Descriptor lock);

    std::filesystem::path lockFile_;
    std::filesystem::path requestFile_;
    Descriptor lock_;
    Descriptor requests_;
};

/// The application's process number in its own session; empty if it does not run. An application that is
/// being started does not run yet.
std::optional<pid_t> runningProcess(const Folder& folder, const std::string& id);

/// Waits until the application does not run.
void waitForEnd(const Folder& folder, const std::string& id);

/// Ends the application in any session: asks it to end, and kills it if it does not end soon. Returns when it
/// has ended. Errors: NotRunning; Io if it could not be ended.
Result<void> stopApplication(const Folder& folder, const std::string& id);

/// Removes files in the run folder that belong to applications of killed sessions.
void removeStaleMarks(const Folder& folder);

}  // namespace vxtv
