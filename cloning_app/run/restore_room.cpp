#include "cloning_app/run/restore_room.h"

#include <sys/statvfs.h>

namespace vxclone {

namespace {

/// Less than this is what is left once somebody was refused room.
constexpr std::uint64_t kLeastRoom = std::uint64_t{64} << 10U;
constexpr std::uint64_t kLeastFiles = 2;

}  // namespace

TreeSize loadReserve(const Tree& package) {
    return together(measureTree(package, TreeLimits{}).value_or(TreeSize{}), kRoomOfARun);
}

TreeSize together(const TreeSize& one, const TreeSize& other) {
    return {one.entries + other.entries, one.files + other.files, one.bytes + other.bytes};
}

bool isFull(const Tree& folder) {
    struct statvfs facts {};
    if (fstatvfs(folder.descriptor, &facts) != 0) {
        return false;
    }
    const bool noBytes = facts.f_blocks != 0 && std::uint64_t{facts.f_bavail} * facts.f_frsize < kLeastRoom;
    return noBytes || (facts.f_files != 0 && facts.f_favail < kLeastFiles);
}

}  // namespace vxclone
