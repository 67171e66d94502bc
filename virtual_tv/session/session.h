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

/// What a session is asked for.
struct SessionWish {
    std::filesystem::path television;        ///< its folder
    std::vector<std::string> sticks;         ///< each HOSTDIR or HOSTDIR:NAME
    std::optional<Isolation> isolation;      ///< nothing: the first way that this machine allows
    bool interactive = false;                ///< the command is a shell and gets the terminal to itself
    std::function<void(const Error&)> warn;  ///< told of trouble that keeps no command from running
};

/// A command's stay in a television.
///
/// Life cycle:
///  1. `open` checks the television and the sticks, finds a way to isolate, and takes the session lock. If no
///     other session runs, it first takes out what a killed one left in the television. When the secure
///     storage is up, its mark is made. The message bus and the home of the applications are started, or
///     shared with the other sessions, and the applications that every session wants are started.
///  2. `run` makes the mount points, forks the session's first process into its namespaces, which mounts the
///     television over /opt, /tmp and /media and what that covers back to its place, and starts the command.
///     When the command has ended, all processes of the session are ended, and the mounts go with them.
///  3. The destructor ends the applications and the bus and takes the mount points out again if this was the
///     last session, and gives the lock back.
/// If the process is killed meanwhile, the kernel ends the session's processes and step 1 of the next session
/// does what is left of step 3.
///
/// Several sessions of one television may run at a time, except on the machine's own paths, where the
/// applications live and end with their session. Only one thread
/// may run in the process.
class Session {
 public:
    /// On failure NotATelevision, BadArgument (a stick), NoIsolation or Io; nothing is left behind.
    static Result<Session> open(const SessionWish& wish);
    Session(Session&&) = default;
    Session& operator=(Session&&) = delete;
    ~Session();

    /// The way that was taken.
    Isolation isolation() const { return isolation_; }

    /// Runs the command and waits for its end. It finds the television's folder in VXTV_TELEVISION, and is in
    /// the caller's working directory if the session sees it, else in "/".
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
