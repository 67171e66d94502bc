#pragma once

#include "virtual_tv/base/descriptor.h"
#include "virtual_tv/base/error.h"
#include "virtual_tv/store/folder.h"

namespace vxtv {

/// Coordinates the sessions of one television: each holds the television's session lock shared for its whole
/// life. A process that gets it exclusively knows that no session runs. The kernel releases the lock when the
/// last process of a session has ended, for any reason.
class SessionLock {
 public:
    /// Takes the lock shared, and waits for a session that is just cleaning up. If no other session runs,
    /// `whenAlone` is called first, with the lock held exclusively. On failure (Io) the sentence names the
    /// folder.
    template <class Function>
    static Result<SessionLock> acquire(const Folder& folder, Function&& whenAlone) {
        auto lock = open(folder);
        if (lock && lock->alone_) whenAlone();
        if (lock) lock->share();
        return lock;
    }

    /// Releases the lock. If no other session runs, `whenLast` is called first, with the lock held
    /// exclusively, and the lock's file is removed.
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
