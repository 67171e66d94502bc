#pragma once

#include <optional>
#include <vector>

#include "cloning_app/base/tree_walk.h"
#include "cloning_app/television/category.h"

namespace vxclone {

/// A load that has begun and has not ended, as far as known. It is stored in a file beside the safety backup.
/// As long as this file exists, no run replaces the safety backup, even if the record of the last run is
/// wrong or missing.
struct UnfinishedLoad {
    std::vector<VXClone> categories;  ///< the categories that may be half changed, each once
    bool wayBack = false;             ///< the safety backup is from before the first such load

    /// The rest, after these categories were loaded completely.
    UnfinishedLoad without(const std::vector<VXClone>& loaded) const;
    /// The same load, with these categories possibly half changed, too.
    UnfinishedLoad with(const std::vector<VXClone>& begun) const;
};

/// Reads the file in the folder. A file that cannot be read or understood counts as a load of everything, so
/// that the safety backup is kept.
std::optional<UnfinishedLoad> unfinishedLoadIn(const Tree& folder);

/// Writes the file, or removes it if no category is left, and flushes the change. Errors: a failure of the
/// disk; the old content is still valid then.
Result<void> keepUnfinishedLoad(const Tree& folder, const UnfinishedLoad& load);

}  // namespace vxclone
