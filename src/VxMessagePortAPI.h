#pragma once

#include <atomic>
#include <condition_variable>
#include <mutex>

#include "platform/bundle.h"

/// Asks a cooperating application, over its message port, to save its own data into the clone directory or to
/// load it from there, and waits for its answer.
///
/// There are no instances: a process has one exchange at a time. Threads: `Backup` and `Restore` may be
/// called from any thread; a second call waits until the first has returned. The television delivers replies
/// on another thread. A lock that fails throws std::system_error; nothing else throws.
class VxMessagePortAPI {
 public:
    /// One complete exchange: up to 5.5 s for the application's port to appear, one message, up to 4 s for
    /// the reply. Result: true only if a reply came in time and said "success".
    static bool Backup(char const* application);
    static bool Restore(char const* application);

 private:
    class Turn;

    static bool Exchange(char const* application, char const* request);
    /// Result: the id of this library's port, negative on failure. The port is never unregistered.
    static int RegisterPort();
    /// Waits for the application's port and sends the request once. Result: whether it was sent.
    static bool SendMessage(int localPort, char const* request, char const* application);
    /// Result: whether the application has its port.
    static bool test_check_remote_port(char const* application);
    static bool send_message_with_local_port(int localPort, _bundle_t* message, char const* application);
    /// Releases the caller's lock and waits for the reply. Result: whether it came in time.
    static bool waitReply(std::unique_lock<std::mutex>& lock);
    /// Intended: takes any message as the reply, from any sender.
    static void message_port_cb(int localPort, char const* remoteApplication, char const* remotePort,
                                bool trusted, _bundle_t* message, void* userData);

    /// Outcome of the last reply. Guarded by `mutex_`.
    static bool result_;
    /// Whether a request is outstanding. Set by a caller before it has the lock, therefore atomic.
    static std::atomic<bool> waiting_;
    static std::mutex mutex_;
    /// Signalled by a reply.
    static std::condition_variable condition_;

    // Guarded by `mutex_`: whether an exchange is in progress, the signal for waiting callers, and the number
    // of replies so far.
    static bool busy_;
    static std::condition_variable turn_;
    static unsigned replies_;
};
