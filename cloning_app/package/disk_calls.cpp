#include "cloning_app/package/disk_calls.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

namespace vxclone {

namespace {

constexpr mode_t kStickFolderMode = 0777;

int flushOrFlushAll(int descriptor) {
    if (fsync(descriptor) == 0) {
        return 0;
    }
    return errno == EINVAL ? syncfs(descriptor) : -1;
}

/// Where the file system does not know the parts of a flush, a whole one.
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
        [](int descriptor) { sync_file_range(descriptor, 0, 0, SYNC_FILE_RANGE_WRITE); },
        awaitWritten,
        [](int folder) { return syncfs(folder); },
        [](int directory, const char* from, const char* to, unsigned flags) {
            return renameat2(directory, from, directory, to, flags);
        },
        [](int directory, const char* name) { return mkdirat(directory, name, kStickFolderMode); }};
}

}  // namespace vxclone
