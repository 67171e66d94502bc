#pragma once

#include "virtual_tv/base/descriptor.h"
#include "virtual_tv/base/error.h"
#include "virtual_tv/store/folder.h"

namespace vxtv {

/// Tells the sessions of one television of each other: each holds the television's session lock shared for
/// its whole life. Whoever gets it alone knows that no session runs. The kernel gives it back when the last
/// process of a session is gone, however it went.
class SessionLock {
 public:
    /// Takes the lock shared, and waits for a session that is just cleaning up. `whenAlone` is called before,
    /// with the lock held alone, if no other session runs.
    /// On failure (Io) the sentence names the folder.
    template <class Function>
    static Result<SessionLock> acquire(const Folder& folder, Function&& whenAlone) {
        auto lock = open(folder);
        if (lock && lock->alone_) whenAlone();
        if (lock) lock->share();
        return lock;
    }

    /// Calls `whenLast` with the lock held alone and removes the lock's file, if no other session runs. The
    /// lock is given back in any case.
    template <class Function>
    void release(Function&& whenLast) {
        if (!becomeAlone()) return file_.close();
        whenLast();
        removeFile();
    }

 private:
    static Result<SessionLock> open(const Folder& folder);
    void share();
    bool becomeAlone();
    void removeFile();

    std::filesystem::path path_;
    Descriptor file_;
    bool alone_ = false;
};

}  // namespace vxtv
