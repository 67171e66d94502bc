#include "virtual_tv/store/steady_locks.h"

#include <fcntl.h>
#include <sqlite3.h>

#include <atomic>
#include <cerrno>
#include <cstdarg>
#include <mutex>

namespace vxtv {

namespace {

constexpr const char* kCall = "fcntl";
constexpr int kTries = 10;

using Fcntl = int (*)(int, int, ...);
std::atomic<Fcntl> callBelow = nullptr;

bool isRelease(int command, const void* argument) {
    return command == F_SETLK && static_cast<const struct flock*>(argument)->l_type == F_UNLCK;
}

/// True while this thread is in the call below. A program and its platform library each contain this code. If
/// both have installed their function in front of the other's, the second call must go to the system's
/// function.
thread_local bool isBelow = false;

int callOnce(int file, int command, void* argument) {
    if (isBelow) {
        return ::fcntl(file, command, argument);
    }
    isBelow = true;
    const int result = callBelow.load()(file, command, argument);
    isBelow = false;
    return result;
}

// Declared like the system's function, because SQLite calls it instead.
int steadyFcntl(int file, int command, ...) {  // NOLINT(cert-dcl50-cpp)
    va_list arguments;
    va_start(arguments, command);
    void* const argument = va_arg(arguments, void*);
    va_end(arguments);
    const bool mustSucceed = isRelease(command, argument);
    int result = callOnce(file, command, argument);
    for (int tries = 1; result == -1 && tries < kTries && (mustSucceed || errno == EINTR); ++tries) {
        result = callOnce(file, command, argument);
    }
    return result;
}

}  // namespace

void makeLocksSteady() {
    static std::mutex mutex;
    const std::lock_guard lock(mutex);
    sqlite3_vfs* const files = sqlite3_vfs_find(nullptr);
    const auto inUse = reinterpret_cast<Fcntl>(files->xGetSystemCall(files, kCall));
    if (inUse != steadyFcntl) {
        callBelow = inUse;
        files->xSetSystemCall(files, kCall, reinterpret_cast<sqlite3_syscall_ptr>(steadyFcntl));
    }
}

}  // namespace vxtv
