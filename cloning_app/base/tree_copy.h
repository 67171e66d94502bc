#pragma once

#include <functional>
#include <string>

#include "cloning_app/base/disk_calls.h"
#include "cloning_app/base/stop_flag.h"
#include "cloning_app/base/tree_walk.h"

namespace vxclone {

/// How large a tree is.
struct TreeSize {
    std::size_t entries = 0;
    std::uint64_t files = 0;
    std::uint64_t bytes = 0;
};

/// Judges an entry before anything is copied: an empty text lets it pass, any other is why it cannot go to
/// where the copy is meant for.
using EntryRule = std::function<std::string(const TreeEntry& entry)>;

/// Measures the tree and checks every entry, as a copy would, without writing. Errors: those of `walkTree`,
/// or `StickLimit` with the rule's text.
Result<TreeSize> measureTree(const Tree& tree, const TreeLimits& limits, const EntryRule& rule = {});

/// Whether a copy reaches the disk before it returns.
enum class Flush { No, Yes };

/// Copies everything in `from` into the empty folder `to`. Result: what was copied; with `Flush::Yes` every
/// file and folder, `to` included, has been flushed. On failure, or once `stop` is raised, `to` holds a part:
/// the caller removes it. Errors: those of `walkTree` for `from`, a failed write to `to`, or the stop.
Result<TreeSize> copyTree(const Tree& from, const Tree& to, const TreeLimits& limits, Flush flush,
                          const DiskCalls& calls, const StopFlag& stop);

/// Gives everything in `from` a second name in the empty folder `to`: folders are made, files are hard links,
/// which take no room for their content. On failure `to` holds a part: the caller removes it. Errors: those
/// of `walkTree` for `from`, or the disk makes no link.
Result<void> linkTree(const Tree& from, const Tree& to, const TreeLimits& limits);

}  // namespace vxclone
