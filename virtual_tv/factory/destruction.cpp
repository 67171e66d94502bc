#include "virtual_tv/factory/destruction.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <stdio.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <string>

#include "common/tree_removal.h"
#include "virtual_tv/base/live_file.h"
#include "virtual_tv/base/own_file.h"
#include "virtual_tv/store/database.h"
#include "virtual_tv/store/folder.h"
#include "virtual_tv/television/television.h"

namespace vxtv {

namespace fs = std::filesystem;

namespace {

Result<void> checkIsTelevision(const Folder& folder) {
    std::error_code error;
    if (fs::is_symlink(fs::symlink_status(folder.root(), error))) {
        return failure(
            ErrorCode::NotATelevision,
            fmt::format("{} is a link, not a television; name the folder itself", folder.root().string()));
    }
    if (Database::isOurs(folder.database())) {
        return {};
    }
    const Result<void> identified = Database::identify(folder.database());
    if (!identified && identified.error().code != ErrorCode::Damaged) {
        return identified;
    }
    return failure(
        ErrorCode::NotATelevision,
        fmt::format("{} cannot be told to be a television: its tv.db is damaged beyond that; remove "
                    "the folder by hand if you are sure",
                    folder.root().string()));
}

/// Prevents new sessions while it exists. Sessions hold the same lock shared.
class ExclusiveLock {
 public:
    explicit ExclusiveLock(const fs::path& file)
        : file_(openOwnFile(file, O_RDONLY).value_or(Descriptor())) {}

    /// Whether no session runs. If no session has ever run, there is no lock file.
    bool take() const { return !file_ || flock(file_.get(), LOCK_EX | LOCK_NB) == 0; }

 private:
    Descriptor file_;
};

/// Data on another file system does not belong to the television.
Result<void> checkRemovable(const Folder& folder) {
    const auto mount = vxcommon::findMountIn(folder.root());
    if (mount) {
        return {};
    }
    const std::string mounted = (folder.root().parent_path() / mount.error().path).string();
    return failure(ErrorCode::Io,
                   fmt::format("{} is not removed: another file system is mounted at {}; unmount it (umount "
                               "{}) and try again",
                               folder.root().string(), mounted, mounted));
}

/// Renames the folder in one step, so that nobody opens a television that is half removed.
Result<fs::path> hide(const fs::path& root) {
    const std::string name = fmt::format(".{}.destroyed.{}", root.filename().string(), getpid());
    fs::path hidden = root.parent_path() / name;
    if (rename(root.c_str(), hidden.c_str()) != 0) {
        return failure(ErrorCode::Io,
                       fmt::format("{} cannot be removed: {}; check that its parent folder may be written",
                                   root.string(), std::strerror(errno)));
    }
    return hidden;
}

}  // namespace

Result<void> destroyTelevision(const fs::path& path) {
    const Folder folder(absoluteFolder(path));
    if (const Result<void> checked = checkIsTelevision(folder); !checked) {
        return checked;
    }
    const ExclusiveLock lock(folder.sessionLock());
    if (!lock.take()) {
        return failure(ErrorCode::Busy,
                       fmt::format("a session runs in {}; end it and try again", folder.root().string()));
    }
    // The applications of a killed session may still be ending, and write until then.
    waitForEndOfLiveFile(folder.homeAddress());
    if (auto removable = checkRemovable(folder); !removable) {
        return removable;
    }
    const Result<fs::path> hidden = hide(folder.root());
    VX_RETURN_IF_FAILED(hidden);
    if (const auto removed = vxcommon::removeTree(*hidden); !removed) {
        return failure(
            ErrorCode::Io,
            fmt::format("{} is gone, but not all of it could be removed: {}: {}; remove {} by "
                        "hand",
                        folder.root().string(), (hidden->parent_path() / removed.error().path).string(),
                        removed.error().text(), hidden->string()));
    }
    return {};
}

}  // namespace vxtv
