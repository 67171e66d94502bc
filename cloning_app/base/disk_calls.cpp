#include "cloning_app/base/disk_calls.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <utility>

namespace vxclone {

namespace {

constexpr mode_t kStickFolderMode = 0777;

int flushOrFlushAll(int descriptor) {
    if (fsync(descriptor) == 0) {
        return 0;
    }
    return errno == EINVAL ? syncfs(descriptor) : -1;
}

/// A file system without sync_file_range flushes the whole file instead.
int awaitWritten(int descriptor) {
    constexpr unsigned kWait =
        SYNC_FILE_RANGE_WAIT_BEFORE | SYNC_FILE_RANGE_WRITE | SYNC_FILE_RANGE_WAIT_AFTER;
    if (sync_file_range(descriptor, 0, 0, kWait) == 0) {
        return 0;
    }
    return errno == EINVAL || errno == ENOSYS ? fsync(descriptor) : -1;
}

}  // namespace

DiskCalls realDiskCalls() {
    return {
        [](int descriptor, const void* data, std::size_t size) { return ::write(descriptor, data, size); },
        flushOrFlushAll,
        [](int descriptor) {
            sync_file_range(descriptor, 0, 0, SYNC_FILE_RANGE_WAIT_BEFORE | SYNC_FILE_RANGE_WRITE);
        },
        awaitWritten,
        [](int folder) { return syncfs(folder); },
        [](int directory, const char* from, const char* to, unsigned flags) {
            return renameat2(directory, from, directory, to, flags);
        },
        [](int directory, const char* name) { return mkdirat(directory, name, kStickFolderMode); }};
}

DiskCalls countingWrites(const DiskCalls& calls, std::uint64_t bytes, TellWritten tell) {
    DiskCalls counting = calls;
    counting.write = [write = calls.write, bytes, tell = std::move(tell), done = std::uint64_t{0}](
                         int descriptor, const void* data, std::size_t size) mutable {
        const ssize_t written = write(descriptor, data, size);
        const int reason = errno;
        done += written < 0 ? 0U : static_cast<std::uint64_t>(written);
        tell(bytes == 0 ? 1 : std::min(1.0, static_cast<double>(done) / static_cast<double>(bytes)));
        errno = reason;
        return written;
    };
    return counting;
}

}  // namespace vxclone
