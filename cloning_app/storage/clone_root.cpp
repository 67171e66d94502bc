#include "cloning_app/storage/clone_root.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <cerrno>
#include <utility>

#include "cloning_app/base/disk_space.h"

namespace vxclone {

namespace {

/// Applications of other users read and write their data in this folder during a run.
constexpr mode_t kCloneFolderMode = 0755;
constexpr mode_t kClosedMode = 0700;

/// Creates the folder and its missing parents. Result: 0, or the system's reason (errno).
int makeFolders(const std::filesystem::path& path) {
    if (mkdir(path.c_str(), kCloneFolderMode) == 0 || errno == EEXIST) {
        return 0;
    }
    if (errno != ENOENT || !path.has_parent_path() || path.parent_path() == path) {
        return errno;
    }
    if (const int reason = makeFolders(path.parent_path()); reason != 0) {
        return reason;
    }
    return mkdir(path.c_str(), kCloneFolderMode) == 0 || errno == EEXIST ? 0 : errno;
}

std::filesystem::path withoutLastSlash(const std::filesystem::path& path) {
    return path.filename().empty() ? path.parent_path() : path;
}

}  // namespace

CloneRoot::CloneRoot(Descriptor folder, std::string path)
    : folder_(std::move(folder)), path_(std::move(path)) {}

Result<CloneRoot> CloneRoot::open(const std::filesystem::path& wanted) {
    const std::filesystem::path path = withoutLastSlash(wanted);
    if (const int reason = makeFolders(path); reason != 0) {
        return tl::make_unexpected(writeError(Place::Television, path.string(), reason));
    }
    Descriptor folder(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    if (!folder.valid()) {
        return tl::make_unexpected(readError(Place::Television, path.string(), errno));
    }
    if (flock(folder.get(), LOCK_EX | LOCK_NB) != 0) {
        return failure(ErrorCode::TelevisionBusy,
                       "another vxclone works on this television; wait for its end");
    }
    // The result is ignored, because a file system without modes does not support this.
    static_cast<void>(fchmod(folder.get(), kCloneFolderMode));
    return CloneRoot(std::move(folder), path.string());
}

CloneRoot::~CloneRoot() {
    if (folder_.valid()) {
        static_cast<void>(fchmod(folder_.get(), kClosedMode));
    }
}

Result<void> CloneRoot::empty() {
    if (auto removable = checkContentsRemovable(tree()); !removable) {
        return removable;
    }
    if (const int reason = removeContents(folder_.get()); reason != 0) {
        return tl::make_unexpected(writeError(Place::Television, path_, reason));
    }
    return {};
}

Result<TreeSize> CloneRoot::fillFrom(const Tree& from, const TreeLimits& limits, const StopFlag& stop,
                                     const TreeSize& reserve, const TellWritten& tell) {
    const auto needed = measureTree(from, limits);
    if (!needed) {
        return needed;
    }
    const TreeSize held = measureTree(tree(), limits).value_or(TreeSize{});
    VX_RETURN_IF_FAILED(checkSpace(tree(), *needed, held, reserve));
    VX_RETURN_IF_FAILED(empty());
    const DiskCalls calls = tell ? countingWrites(realDiskCalls(), needed->bytes, tell) : realDiskCalls();
    auto copied = copyTree(from, tree(), limits, Flush::No, calls, stop);
    if (!copied) {
        removeContents(folder_.get());
    }
    return copied;
}

Result<void> CloneRoot::fillWithLinksTo(const Tree& from, const TreeLimits& limits) {
    if (const auto emptied = empty(); !emptied) {
        return emptied;
    }
    auto linked = linkTree(from, tree(), limits);
    if (!linked) {
        removeContents(folder_.get());
    }
    return linked;
}

}  // namespace vxclone
