#pragma once

#include <filesystem>
#include <string>

#include "common/error.h"

namespace vxcommon {

/// What stands in the way of a removal.
struct RemovalTrouble {
    std::string path;  ///< relative to the folder in which the removal began
    int reason;        ///< the system's (errno); EXDEV stands for another file system that is mounted there

    /// For a sentence: "another file system is mounted there", "Permission denied".
    std::string text() const;
};

using Removal = tl::expected<void, RemovalTrouble>;

/// Removes the entry of the folder `directory` and everything under it, however deep. Links are removed, not
/// followed. An entry that is not there counts as removed.
///
/// Nothing is removed while another file system, or another part of this one, is mounted anywhere under the
/// entry. One that is mounted meanwhile ends the removal, and nothing on it is touched. After any other
/// trouble the removal goes on with what is left, and the first trouble is the result.
Removal removeTree(int directory, const std::string& name);

/// Removes everything in the folder, not the folder, in the same way. The paths in its trouble begin in the
/// folder.
Removal removeContents(int directory);

/// Removes what has this path, in the same way. The paths in its trouble begin in the parent folder.
Removal removeTree(const std::filesystem::path& path);

/// Looks whether a removal of the entry would meet another file system, and removes nothing. Its only trouble
/// is that one.
Removal findMountIn(int directory, const std::string& name);
Removal findMountInContents(int directory);
Removal findMountIn(const std::filesystem::path& path);

}  // namespace vxcommon
