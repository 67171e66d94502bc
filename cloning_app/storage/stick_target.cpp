#include "cloning_app/storage/stick_target.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <ctime>
#include <system_error>
#include <utility>

#include "cloning_app/package/layout.h"
#include "cloning_app/television/category.h"
#include "common/terminal_table.h"
#include "common/tree_removal.h"

namespace vxclone {

namespace {

/// The folder as an absolute path without a slash, "." or ".." at its end.
std::filesystem::path normalised(const std::filesystem::path& folder) {
    std::error_code none;
    std::filesystem::path path = std::filesystem::absolute(folder, none);
    while (path.has_relative_path() && path.filename().empty()) {
        path = path.parent_path();
    }
    if (path.filename() == "." || path.filename() == "..") {
        path = std::filesystem::weakly_canonical(path, none);
    }
    return path;
}

bool isMountPoint(int parent, const std::string& name) {
    struct statx facts {};
    if (statx(parent, name.c_str(), AT_SYMLINK_NOFOLLOW, STATX_BASIC_STATS, &facts) == 0 &&
        (facts.stx_attributes_mask & STATX_ATTR_MOUNT_ROOT) != 0) {
        return (facts.stx_attributes & STATX_ATTR_MOUNT_ROOT) != 0;
    }
    struct stat inside {};
    struct stat outside {};
    return fstatat(parent, name.c_str(), &inside, AT_SYMLINK_NOFOLLOW) == 0 && fstat(parent, &outside) == 0 &&
           inside.st_dev != outside.st_dev;
}

tl::unexpected<Error> mountPoint(const std::string& path) {
    return failure(ErrorCode::MountPoint, vxcommon::printable(path) +
                                              " is a whole stick or disk; name a folder on it, such as " +
                                              vxcommon::printable(path == "/" ? "" : path) + "/clone");
}

tl::unexpected<Error> notAPackage(const std::string& path, const std::string& why) {
    return failure(ErrorCode::NotAPackage, vxcommon::printable(path) + " " + why + "; choose another folder");
}

tl::unexpected<Error> anotherBackup(const std::string& path) {
    return failure(ErrorCode::TelevisionBusy, "another vxclone is writing a backup to " +
                                                  vxcommon::printable(path) + "; wait for its end");
}

/// On a file system without locks, a leftover must be unchanged for this time before it is removed.
constexpr std::time_t kSecondsOfAnother = 60;

/// Locks the folder for this process. Result: false if another process has it locked.
bool hold(const Descriptor& folder) {
    if (flock(folder.get(), LOCK_EX | LOCK_NB) == 0) {
        return true;
    }
    struct stat facts {};
    if (errno == EWOULDBLOCK || fstat(folder.get(), &facts) != 0) {
        return false;
    }
    const std::time_t age = std::time(nullptr) - facts.st_mtime;
    return age < 0 || age > kSecondsOfAnother;
}

/// Whether another backup is filling or removing this folder.
bool isHeldByAnother(int parent, const std::string& name) {
    const Descriptor folder(openat(parent, name.c_str(), kOpenFolder));
    return folder.valid() && !hold(folder);
}

}  // namespace

StickTarget::StickTarget(Descriptor parent, std::string parentPath, std::string name, DiskCalls calls)
    : parent_(std::move(parent)),
      name_(std::move(name)),
      path_((parentPath == "/" ? "" : std::move(parentPath)) + "/" + name_),
      newName_(newSiblingOf(name_)),
      oldName_(oldSiblingOf(name_)),
      calls_(std::move(calls)) {}

Result<StickTarget> StickTarget::open(const std::filesystem::path& folder, DiskCalls calls) {
    if (folder.empty()) {
        return failure(ErrorCode::BadArguments, "the folder's name is empty; name a folder on the stick");
    }
    const std::filesystem::path path = normalised(folder);
    if (!path.has_relative_path()) {
        return mountPoint("/");
    }
    const std::filesystem::path parentPath = path.parent_path();
    Descriptor parent(::open(parentPath.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!parent.valid()) {
        const std::string where = vxcommon::printable(parentPath.string());
        if (errno == ENOENT || errno == ENOTDIR) {
            return failure(ErrorCode::StickMissing,
                           "there is no folder " + where + "; is the stick plugged in? Check the path");
        }
        return tl::make_unexpected(readError(Place::Stick, parentPath.string(), errno));
    }
    if (isMountPoint(parent.get(), path.filename().string())) {
        return mountPoint(path.string());
    }
    return StickTarget(std::move(parent), parentPath.string(), path.filename().string(), std::move(calls));
}

Tree StickTarget::parent() const {
    return {parent_.get(), std::filesystem::path(path_).parent_path().string(), Place::Stick};
}

Result<bool> StickTarget::isFolder(const std::string& name) const {
    struct stat facts {};
    if (fstatat(parent_.get(), name.c_str(), &facts, AT_SYMLINK_NOFOLLOW) == 0) {
        return S_ISDIR(facts.st_mode);
    }
    if (meansAbsent(errno)) {
        return false;
    }
    return tl::make_unexpected(readError(Place::Stick, parent().path + "/" + name, errno));
}

/// Whether the name holds nothing of value: nothing, an empty folder or file, or a broken link.
Result<bool> StickTarget::isVacant() const {
    struct stat facts {};
    if (fstatat(parent_.get(), name_.c_str(), &facts, AT_SYMLINK_NOFOLLOW) != 0) {
        return meansAbsent(errno) ? Result<bool>(true)
                                  : tl::make_unexpected(readError(Place::Stick, path_, errno));
    }
    if (S_ISDIR(facts.st_mode)) {
        return openFolder().and_then([this](const Descriptor& folder) {
            return namesIn({folder.get(), path_, Place::Stick}, TreeLimits{}.entries)
                .map([](const std::vector<std::string>& names) { return names.empty(); });
        });
    }
    struct stat target {};
    return (S_ISREG(facts.st_mode) && facts.st_size == 0) ||
           (S_ISLNK(facts.st_mode) && fstatat(parent_.get(), name_.c_str(), &target, 0) != 0);
}

tl::unexpected<Error> StickTarget::twoPackages() const {
    const std::string folder = vxcommon::printable(parent().path);
    return failure(
        ErrorCode::NotAPackage,
        fmt::format("a backup was interrupted: the previous package is {} in {}, and {} is no whole "
                    "package; move one of the two away and back up again",
                    vxcommon::printable(oldName_), folder, vxcommon::printable(path_)));
}

/// Gives the package that was set aside its name again. Result: false if something else has that name.
Result<bool> StickTarget::putBack() {
    const int parent = parent_.get();
    if (calls_.rename(parent, oldName_.c_str(), name_.c_str(), 0) != 0) {
        if (errno == ENOTDIR || errno == ENOTEMPTY || errno == EEXIST) {
            return false;
        }
        return tl::make_unexpected(writeError(Place::Stick, path_, errno));
    }
    if (calls_.flush(parent) != 0) {
        return tl::make_unexpected(writeError(Place::Stick, path_, errno));
    }
    return true;
}

Result<std::optional<std::string>> StickTarget::recover(const Judge& isWhole) {
    // Another backup that is still running would lose its package by the removal below.
    for (const std::string& name : {newName_, oldName_}) {
        if (isHeldByAnother(parent_.get(), name)) {
            return anotherBackup(path_);
        }
    }
    std::optional<std::string> said;
    // If the check fails, nothing is changed, because an apparent leftover may be the only package.
    const auto setAside = isFolder(oldName_);
    const auto vacant = setAside ? isVacant() : setAside;
    VX_RETURN_IF_FAILED(vacant);
    if (*setAside && *vacant) {
        // The backup was cut off between the two steps of the swap. The name is free, so the old package gets
        // it back.
        const auto back = putBack();
        VX_RETURN_IF_FAILED(back);
        if (!*back) {
            return twoPackages();
        }
        said =
            "A backup was interrupted: the previous package in " + vxcommon::printable(path_) + " is back.";
    } else if (*setAside) {
        // The package that was set aside is superfluous only if the new one is complete.
        const auto folder = openFolder();
        if (!folder || !isWhole({folder->get(), path_, Place::Stick})) {
            return twoPackages();
        }
    }
    // A leftover that cannot be removed needs only room, so this is no error.
    for (const std::string& leftover : {newName_, oldName_}) {
        if (hasEntry(parent(), leftover).value_or(false) && removeTree(parent_.get(), leftover) == 0 &&
            !said) {
            said = "A backup was interrupted: what it left beside " + vxcommon::printable(path_) +
                   " is removed.";
        }
    }
    return said;
}

Result<std::optional<std::string>> StickTarget::meanWhatWasSetAside() {
    const auto setAside = isFolder(oldName_);
    const auto vacant = setAside && *setAside ? isVacant() : setAside;
    VX_RETURN_IF_FAILED(vacant);
    if (!*vacant) {
        return std::optional<std::string>();
    }
    std::string said = "A backup to " + vxcommon::printable(path_) +
                       " was interrupted: the previous package beside it is meant.";
    name_ = oldName_;
    path_ = (parent().path == "/" ? "" : parent().path) + "/" + name_;
    return std::optional(std::move(said));
}

Result<Descriptor> StickTarget::openFolder() const {
    struct stat facts {};
    if (fstatat(parent_.get(), name_.c_str(), &facts, AT_SYMLINK_NOFOLLOW) != 0) {
        if (errno == ENOENT) {
            return notAPackage(path_, "does not exist");
        }
        return tl::make_unexpected(readError(Place::Stick, path_, errno));
    }
    if (!S_ISDIR(facts.st_mode)) {
        return notAPackage(path_, S_ISLNK(facts.st_mode) ? "is a link, not a folder" : "is not a folder");
    }
    Descriptor folder(openat(parent_.get(), name_.c_str(), kOpenFolder));
    if (!folder.valid()) {
        return tl::make_unexpected(readError(Place::Stick, path_, errno));
    }
    return folder;
}

Result<bool> StickTarget::holdsKnownEntry(int directory, bool& empty) const {
    auto names = namesIn({directory, path_, Place::Stick}, TreeLimits{}.entries);
    VX_RETURN_IF_FAILED(names);
    names->erase(
        std::remove_if(names->begin(), names->end(), [](const std::string& name) { return isSidecar(name); }),
        names->end());
    empty = names->empty();
    return std::any_of(names->begin(), names->end(),
                       [](const std::string& name) { return isKnownEntry(name); });
}

Result<void> StickTarget::checkReplaceable() const {
    const auto there = hasEntry(parent(), name_);
    VX_RETURN_IF_FAILED(there);
    if (!*there) {
        return {};
    }
    const auto folder = openFolder();
    VX_RETURN_IF_FAILED(folder);
    bool empty = false;
    const auto known = holdsKnownEntry(folder->get(), empty);
    VX_RETURN_IF_FAILED(known);
    if (!*known && !empty) {
        return notAPackage(path_, "holds files and is not a clone package");
    }
    return checkRemovable(parent(), name_);
}

Result<void> StickTarget::checkInPlace() const {
    const std::string parentPath = std::filesystem::path(path_).parent_path().string();
    // After the stick was pulled out, the path is an empty folder of the television or another stick, while
    // the descriptor still refers to the old one.
    struct stat held {};
    struct stat named {};
    if (fstat(parent_.get(), &held) == 0 && stat(parentPath.c_str(), &named) == 0 &&
        held.st_dev == named.st_dev && held.st_ino == named.st_ino) {
        return {};
    }
    return failure(ErrorCode::StickMissing, vxcommon::printable(parentPath) +
                                                " is not there any more: the stick was taken out before the "
                                                "backup had ended; put it in and back up again");
}

Result<Descriptor> StickTarget::openPackage() const {
    auto folder = openFolder();
    if (!folder) {
        return folder;
    }
    bool empty = false;
    const auto known = holdsKnownEntry(folder->get(), empty);
    VX_RETURN_IF_FAILED(known);
    if (!*known) {
        return notAPackage(path_, empty ? "is empty, not a clone package" : "is not a clone package");
    }
    return folder;
}

Replacement::Replacement(StickTarget& target, Descriptor folder)
    : target_(&target), folder_(std::move(folder)) {}

Replacement::Replacement(Replacement&& other) noexcept
    : target_(std::exchange(other.target_, nullptr)), folder_(std::move(other.folder_)) {}

Replacement::~Replacement() {
    if (target_ != nullptr) {
        removeTree(target_->parent_.get(), target_->newName_);
    }
}

Result<Replacement> Replacement::begin(StickTarget& target) {
    const int parent = target.parent_.get();
    const auto makeFolder = [&] {
        return target.calls_.makeFolder(parent, target.newName_.c_str()) == 0 ? 0 : errno;
    };
    int reason = makeFolder();
    if (reason == EEXIST && isHeldByAnother(parent, target.newName_)) {
        return anotherBackup(target.path_);
    }
    // Otherwise it is the leftover of an interrupted backup, which nobody needs.
    if (reason == EEXIST) {
        VX_RETURN_IF_FAILED(checkRemovable(target.parent(), target.newName_));
        const int left = removeTree(parent, target.newName_);
        reason = left != 0 ? left : makeFolder();
    }
    if (reason != 0) {
        return tl::make_unexpected(writeError(Place::Stick, target.path_, reason));
    }
    Replacement replacement(target, Descriptor(openat(parent, target.newName_.c_str(), kOpenFolder)));
    if (!replacement.folder_.valid()) {
        return tl::make_unexpected(writeError(Place::Stick, target.path_, errno));
    }
    // Ignored on a file system without locks: there the time of the last change protects the folder.
    static_cast<void>(flock(replacement.folder_.get(), LOCK_EX | LOCK_NB));
    return replacement;
}

Tree Replacement::tree() const {
    return {folder_.get(), target_->path_, Place::Stick};
}

tl::unexpected<Error> Replacement::failed(int errorNumber) const {
    return errorNumber == EBUSY ? mountPoint(target_->path_)
                                : tl::make_unexpected(writeError(Place::Stick, target_->path_, errorNumber));
}

int Replacement::rename(const std::string& from, const std::string& to, unsigned flags) {
    return target_->calls_.rename(target_->parent_.get(), from.c_str(), to.c_str(), flags) == 0 ? 0 : errno;
}

Result<void> Replacement::settle(const std::function<int()>& undo) {
    if (target_->calls_.flush(target_->parent_.get()) == 0) {
        return {};
    }
    // The stick may forget the move, so the old package gets its name back. If that fails, too, both packages
    // stay for the next backup to decide.
    const int reason = errno;
    auto failure = failed(reason);
    if (undo() != 0) {
        target_ = nullptr;
    }
    return failure;
}

Result<void> Replacement::removePrevious(const std::string& name) {
    StickTarget& target = *std::exchange(target_, nullptr);
    const auto removed = vxcommon::removeTree(target.parent_.get(), name);
    int reason = removed ? 0 : removed.error().reason;
    if (reason == EXDEV) {
        const std::string mounted = vxcommon::printable(target.parent().path + "/" + removed.error().path);
        return failure(
            ErrorCode::StickIo,
            "the new package is in " + vxcommon::printable(target.path()) +
                ", but the old one beside it cannot be removed: another file system is mounted at " +
                mounted + "; unmount it (umount " + mounted + ") and run vxclone backup again");
    }
    if (reason == 0 && target.calls_.flush(target.parent_.get()) != 0) {
        reason = errno;
    }
    if (reason != 0) {
        return failure(ErrorCode::StickIo, "the new package is in " + vxcommon::printable(target.path_) +
                                               ", but the old one beside it cannot be removed: " +
                                               std::generic_category().message(reason) +
                                               "; run vxclone backup again");
    }
    return {};
}

Result<void> Replacement::swapInTwoSteps() {
    if (const int reason = rename(target_->name_, target_->oldName_); reason != 0) {
        return failed(reason);
    }
    if (const int reason = rename(target_->newName_, target_->name_); reason != 0) {
        rename(target_->oldName_, target_->name_);
        return failed(reason);
    }
    const auto undo = [this] {
        const int reason = rename(target_->name_, target_->newName_);
        return reason != 0 ? reason : rename(target_->oldName_, target_->name_);
    };
    if (auto settled = settle(undo); !settled) {
        return settled;
    }
    return removePrevious(target_->oldName_);
}

Result<void> Replacement::commit() {
    const std::string& name = target_->name_;
    const std::string& newName = target_->newName_;
    const auto replaces = hasEntry(target_->parent(), name);
    VX_RETURN_IF_FAILED(replaces);
    if (auto removable = checkRemovable(target_->parent(), name); !removable) {
        return removable;
    }
    // Locked, so that another backup does not take the old package for a leftover.
    previous_ = Descriptor(openat(target_->parent_.get(), name.c_str(), kOpenFolder));
    static_cast<void>(flock(previous_.get(), LOCK_EX | LOCK_NB));
    const unsigned flags = *replaces ? RENAME_EXCHANGE : 0U;
    const int reason = rename(newName, name, flags);
    // A file system such as FAT cannot exchange two names.
    if (*replaces && (reason == EINVAL || reason == ENOSYS || reason == EOPNOTSUPP)) {
        return swapInTwoSteps();
    }
    if (reason != 0) {
        return failed(reason);
    }
    if (auto settled = settle([&] { return rename(name, newName, flags); }); !settled) {
        return settled;
    }
    return removePrevious(newName);
}

}  // namespace vxclone
