#pragma once

#include <filesystem>
#include <string>

#include "common/error.h"

namespace vxcommon {

/// The reason why a removal could not be completed.
struct RemovalTrouble {
    std::string path;  ///< relative to the folder in which the removal began
    int reason;        ///< the system's (errno); EXDEV means that another file system is mounted there

    /// The reason in words: "another file system is mounted there", "Permission denied".
    std::string text() const;
};

using Removal = tl::expected<void, RemovalTrouble>;

/// Removes the entry of the folder `directory` and everything below it, at any depth. Links are removed, not
/// followed. A missing entry counts as removed.
///
/// Nothing is removed while another file system, or another part of this one, is mounted anywhere below the
/// entry. If something is mounted during the removal, the removal ends and does not touch it. After other
/// failures the removal continues, and the first failure is the result.
Removal removeTree(int directory, const std::string& name);

/// Removes everything in the folder in the same way, but not the folder. Paths in the result begin in the
/// folder.
Removal removeContents(int directory);

/// Removes the entry with this path in the same way. Paths in the result begin in the parent folder.
Removal removeTree(const std::filesystem::path& path);

/// Checks whether a removal of the entry would meet another file system. Removes nothing. Reports only such a
/// mount.
Removal findMountIn(int directory, const std::string& name);
Removal findMountInContents(int directory);
Removal findMountIn(const std::filesystem::path& path);

}  // namespace vxcommon
