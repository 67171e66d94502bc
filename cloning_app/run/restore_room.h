#pragma once

#include "cloning_app/package/tree_copy.h"

namespace vxclone {

/// What a restore writes on the television's disk beside the files of the package. The settings store keeps a
/// journal, which it writes back once that has 4 MiB; the rest is for the log, the services' databases and
/// the record of the run. A store that has no room in the middle leaves the television half restored.
inline constexpr TreeSize kRoomOfARun = {64, 0, std::uint64_t{6} << 20U};

/// How much room a load of the package needs beside the package in the clone folder: its files once more,
/// which services and folders take over before they give up what they had, and `kRoomOfARun`.
TreeSize loadReserve(const Tree& package);

/// Both together.
TreeSize together(const TreeSize& one, const TreeSize& other);

/// Whether the disk of this folder has next to no room left, in bytes or in files. False where nobody can
/// tell.
bool isFull(const Tree& folder);

}  // namespace vxclone
