#pragma once

#include <optional>
#include <vector>

#include "cloning_app/base/tree_walk.h"
#include "cloning_app/television/category.h"

namespace vxclone {

/// A load that has begun and of which nobody knows that it came to its end. It is a file beside the safety
/// backup: while it is there, no run replaces that backup, whatever the record of the last run says or lacks.
struct UnfinishedLoad {
    std::vector<VXClone> categories;  ///< what may be half changed, each once
    bool wayBack = false;             ///< the safety backup is from before the first such load

    /// What is left once these categories were loaded to the end.
    UnfinishedLoad without(const std::vector<VXClone>& loaded) const;
    /// The same, and these categories may be half changed as well.
    UnfinishedLoad with(const std::vector<VXClone>& begun) const;
};

/// Reads the file in the folder. One that cannot be read or understood tells of a load of everything, so that
/// nothing is lost for it.
std::optional<UnfinishedLoad> unfinishedLoadIn(const Tree& folder);

/// Writes the file, or removes it where no category is left; it is flushed then. Errors: the disk says no,
/// and what the folder told before still holds.
Result<void> keepUnfinishedLoad(const Tree& folder, const UnfinishedLoad& load);

}  // namespace vxclone
