#pragma once

#include <functional>
#include <string>

#include "cloning_app/base/disk_calls.h"
#include "cloning_app/base/stop_flag.h"
#include "cloning_app/base/tree_walk.h"

namespace vxclone {

/// The size of a tree.
struct TreeSize {
    std::size_t entries = 0;
    std::uint64_t files = 0;
    std::uint64_t bytes = 0;
};

/// Checks an entry before anything is copied. An empty text accepts it; otherwise the text is the reason why
/// the destination cannot hold it.
using EntryRule = std::function<std::string(const TreeEntry& entry)>;

/// Measures the tree and checks every entry as a copy would do, without writing. Errors: those of `walkTree`,
/// or `StickLimit` with the rule's text.
Result<TreeSize> measureTree(const Tree& tree, const TreeLimits& limits, const EntryRule& rule = {});

/// Whether a copy is on the disk when the call returns.
enum class Flush { No, Yes };

/// Copies everything in `from` into the empty folder `to`. Result: the size of the copy. With `Flush::Yes`
/// every file and folder, including `to`, was flushed. On failure, or when `stop` is raised, `to` is
/// incomplete, and the caller removes it. Errors: those of `walkTree` for `from`, a failed write to `to`, or
/// the stop.
Result<TreeSize> copyTree(const Tree& from, const Tree& to, const TreeLimits& limits, Flush flush,
                          const DiskCalls& calls, const StopFlag& stop);

/// Creates hard links in the empty folder `to` for all files in `from`, and creates the folders. The links
/// need no room for content. On failure `to` is incomplete, and the caller removes it. Errors: those of
/// `walkTree` for `from`, or the disk cannot create a link.
Result<void> linkTree(const Tree& from, const Tree& to, const TreeLimits& limits);

}  // namespace vxclone
