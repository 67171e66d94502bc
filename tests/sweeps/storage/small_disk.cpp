#include "tests/sweeps/storage/small_disk.h"

#include <sys/mount.h>
#include <sys/statvfs.h>

#include <cerrno>
#include <cstdint>
#include <system_error>
#include <utility>

namespace vxtest {

namespace {

constexpr unsigned long kFlags = MS_NOSUID | MS_NODEV;

void mountMemory(const std::filesystem::path& folder, unsigned long flags, const std::string& options) {
    if (mount("tmpfs", folder.c_str(), "tmpfs", flags, options.c_str()) != 0) {
        throw std::system_error(errno, std::generic_category(), "a disk (" + options + ")");
    }
}

}  // namespace

SmallDisk::SmallDisk(std::filesystem::path folder, const std::string& options) : folder_(std::move(folder)) {
    mountMemory(folder_, kFlags, options);
}

SmallDisk::~SmallDisk() {
    umount2(folder_.c_str(), MNT_DETACH);
}

void SmallDisk::leave(const std::string& option, int unit, int room) const {
    struct statvfs facts {};
    if (statvfs(folder_.c_str(), &facts) != 0) {
        throw std::system_error(errno, std::generic_category(), folder_.string());
    }
    const bool inBytes = option == "size=";
    const std::uint64_t used =
        inBytes ? (facts.f_blocks - facts.f_bfree) * facts.f_frsize : facts.f_files - facts.f_ffree;
    const std::uint64_t size = used + static_cast<std::uint64_t>(unit) * static_cast<std::uint64_t>(room);
    mountMemory(folder_, kFlags | MS_REMOUNT, option + std::to_string(size));
}

}  // namespace vxtest
