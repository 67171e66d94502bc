#include "virtual_tv/session/session_lock.h"

#include <fcntl.h>
#include <fmt/core.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <system_error>
#include <utility>

#include "virtual_tv/base/own_file.h"

namespace vxtv {

namespace {

constexpr mode_t kLockMode = 0644;

int lockFile(const Descriptor& file, int how) {
    int result = 0;
    do {
        result = flock(file.get(), how);
    } while (result != 0 && errno == EINTR);
    return result;
}

/// The last session removes the file, so a lock only counts if it is on the file that exists now.
bool isStillThere(const Descriptor& file, const std::filesystem::path& path) {
    struct stat held {};
    struct stat there {};
    return fstat(file.get(), &held) == 0 && stat(path.c_str(), &there) == 0 && held.st_dev == there.st_dev &&
           held.st_ino == there.st_ino;
}

}  // namespace

Result<SessionLock> SessionLock::open(const Folder& folder) {
    std::error_code ignored;
    std::filesystem::create_directory(folder.run(), ignored);
    SessionLock lock;
    lock.path_ = folder.sessionLock();
    do {
        auto file = openOwnFile(lock.path_, O_RDWR | O_CREAT, kLockMode);
        if (!file) {
            return ownFileError(lock.path_, "locked", file.error());
        }
        lock.file_ = std::move(*file);
        lock.alone_ = lock.file_ && lockFile(lock.file_, LOCK_EX | LOCK_NB) == 0;
        if (!lock.file_ || (!lock.alone_ && lockFile(lock.file_, LOCK_SH) != 0)) {
            return failure(
                ErrorCode::Io,
                fmt::format("cannot lock '{}': {}; see that you may write to the television's folder",
                            lock.path_.string(), reason()));
        }
    } while (!isStillThere(lock.file_, lock.path_));
    return lock;
}

void SessionLock::share() {
    lockFile(file_, LOCK_SH);
    alone_ = false;
}

bool SessionLock::becomeAlone() {
    alone_ = file_ && lockFile(file_, LOCK_EX | LOCK_NB) == 0 && isStillThere(file_, path_);
    return alone_;
}

void SessionLock::removeFile() {
    unlink(path_.c_str());
    file_.close();
}

}  // namespace vxtv
