#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "virtual_tv/base/error.h"
#include "virtual_tv/bus/bus_share.h"
#include "virtual_tv/process/isolation.h"
#include "virtual_tv/process/live_share.h"
#include "virtual_tv/process/supervisor.h"
#include "virtual_tv/session/entry_record.h"
#include "virtual_tv/session/mounts.h"
#include "virtual_tv/session/session_lock.h"
#include "virtual_tv/session/stick.h"
#include "virtual_tv/store/folder.h"

namespace vxtv {

/// The options of a session.
struct SessionWish {
    std::filesystem::path television;        ///< its folder
    std::vector<std::string> sticks;         ///< each HOSTDIR or HOSTDIR:NAME
    std::optional<Isolation> isolation;      ///< empty: the first way that this machine allows
    bool interactive = false;                ///< the command is a shell and gets the terminal to itself
    std::function<void(const Error&)> warn;  ///< called for problems that do not prevent a command
};

/// The run of a command in a television.
///
/// Life cycle:
///  1. `open` checks the television and the sticks, chooses the isolation, and takes the session lock. If no
///     other session runs, it first removes what a killed one left in the television. If the secure storage
///     is ready, it makes the mark. It starts the message bus and the home of the applications, or shares
///     those of the other sessions, and starts the applications with `autostart`.
///  2. `run` makes the mount points and forks the session's first process into its namespaces. That process
///     mounts the television over /opt, /tmp and /media, makes the covered directories that the session needs
///     visible again, and starts the command. When the command has ended, all processes of the session are
///     ended, and the mounts disappear with them.
///  3. The destructor releases the lock. If this was the last session, it first ends the applications and the
///     bus, and removes the mount points.
/// If the process is killed meanwhile, the kernel ends the session's processes, and step 1 of the next
/// session does the rest of step 3.
///
/// Several sessions of one television may run at the same time, except on the machine's own paths, where the
/// applications belong to their session and end with it. The process must have only one thread.
class Session {
 public:
    /// On failure NotATelevision, BadArgument (a stick), NoIsolation or Io; nothing is left behind.
    static Result<Session> open(const SessionWish& wish);
    Session(Session&&) = default;
    Session& operator=(Session&&) = delete;
    ~Session();

    /// The chosen isolation.
    Isolation isolation() const { return isolation_; }

    /// Runs the command and waits for its end. VXTV_TELEVISION holds the television's folder. The working
    /// directory is the caller's if the session sees it, otherwise "/".
    Result<Outcome> run(const std::vector<std::string>& command) const;

 private:
    Session(Folder folder, std::vector<Stick> sticks, Isolation isolation, const SessionWish& wish,
            SessionLock lock);
    bool markStorage(const std::filesystem::path& mark) const;
    Result<Outcome> runOnRealPaths(Job job) const;
    Result<void> shareHome();
    std::vector<Need> needsOf(const std::string& program) const;

    Folder folder_;
    EntryRecord record_;
    std::vector<Stick> sticks_;
    Isolation isolation_;
    bool interactive_;
    std::function<void(const Error&)> warn_;
    SessionLock lock_;
    BusShare bus_;
    LiveShare home_;
};

}  // namespace vxtv
