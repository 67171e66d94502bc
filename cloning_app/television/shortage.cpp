#include "cloning_app/television/shortage.h"

#include <fcntl.h>
#include <sys/statvfs.h>

#include <array>
#include <cerrno>
#include <memory>
#include <new>

#include "cloning_app/base/tree_walk.h"

namespace vxclone {

namespace {

/// As many as a key needs to be read: the storage, its lock, the entry, the log.
constexpr std::size_t kDescriptorsNeeded = 8;
constexpr std::size_t kMemoryNeeded = std::size_t{1} << 20U;

/// Result: 0, or the system's reason (errno).
int shortOfDescriptors() {
    std::array<Descriptor, kDescriptorsNeeded> opened;
    for (Descriptor& each : opened) {
        each = Descriptor(open("/", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        if (!each.valid()) {
            return errno == EMFILE || errno == ENFILE || errno == ENOMEM ? errno : 0;
        }
    }
    return 0;
}

}  // namespace

std::optional<Error> shortageAt(const std::string& folder) {
    if (const int reason = shortOfDescriptors(); reason != 0) {
        return readError(Place::Television, folder, reason);
    }
    const std::unique_ptr<char[]> memory(new (std::nothrow) char[kMemoryNeeded]);
    if (!memory) {
        return readError(Place::Television, folder, ENOMEM);
    }
    struct statvfs disk {};
    if (statvfs(folder.c_str(), &disk) == 0 && disk.f_blocks != 0 && disk.f_bavail == 0) {
        return writeError(Place::Television, folder, ENOSPC);
    }
    return std::nullopt;
}

}  // namespace vxclone
