#include "cloning_app/storage/safety_store.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstdio>

namespace vxclone {

namespace {

constexpr const char* kSafety = "Safety";
constexpr const char* kNewSafety = "Safety.new";
constexpr const char* kOldSafety = "Safety.old";
constexpr const char* kAside = "Clone.aside";
constexpr const char* kRoom = "Safety.room";
/// It contains secrets, so only the application's user may read it.
constexpr mode_t kSafetyFolderMode = 0700;

tl::unexpected<Error> cannotWrite(const std::string& path, int reason) {
    return tl::make_unexpected(writeError(Place::Television, path, reason));
}

Result<void> moveContents(const Tree& from, int to, const std::string& toPath) {
    const auto names = namesIn(from, TreeLimits{}.entries);
    VX_RETURN_IF_FAILED(names);
    for (const std::string& name : *names) {
        if (renameat(from.descriptor, name.c_str(), to, name.c_str()) != 0) {
            return cannotWrite(toPath + "/" + name, errno);
        }
    }
    return {};
}

/// Creates an empty folder with that name and replaces anything of that name.
Result<Descriptor> makeFolder(int parent, const std::string& parentPath, const char* name) {
    if (const auto removable = checkRemovable({parent, parentPath, Place::Television}, name); !removable) {
        return tl::make_unexpected(removable.error());
    }
    int reason = removeTree(parent, name);
    if (reason == 0 && mkdirat(parent, name, kSafetyFolderMode) != 0) {
        reason = errno;
    }
    Descriptor made(reason == 0 ? openat(parent, name, kOpenFolder) : -1);
    if (!made.valid()) {
        return cannotWrite(parentPath + "/" + name, reason == 0 ? errno : reason);
    }
    return made;
}

}  // namespace

Result<SafetyStore> SafetyStore::open(const std::filesystem::path& dataFolder) {
    auto folder = openOnTelevision(dataFolder);
    VX_RETURN_IF_FAILED(folder);
    return SafetyStore(std::move(*folder), dataFolder.string());
}

Result<Descriptor> SafetyStore::openSafety() const {
    Descriptor safety(openat(folder_.get(), kSafety, kOpenFolder));
    if (!safety.valid() && errno != ENOENT) {
        return tl::make_unexpected(readError(Place::Television, path_ + "/" + kSafety, errno));
    }
    return safety;
}

Result<void> SafetyStore::setAside(const Tree& root) const {
    const auto aside = makeFolder(folder_.get(), path_, kAside);
    VX_RETURN_IF_FAILED(aside);
    return moveContents(root, aside->get(), path_ + "/" + kAside);
}

Result<void> SafetyStore::bringBack(const Tree& root) const {
    if (const auto removable = checkContentsRemovable(root); !removable) {
        return removable;
    }
    if (const int reason = removeContents(root.descriptor); reason != 0) {
        return cannotWrite(root.path, reason);
    }
    const Descriptor aside(openat(folder_.get(), kAside, kOpenFolder));
    if (!aside.valid()) {
        return tl::make_unexpected(readError(Place::Television, path_ + "/" + kAside, errno));
    }
    const auto moved =
        moveContents({aside.get(), path_ + "/" + kAside, Place::Television}, root.descriptor, root.path);
    if (moved) {
        removeTree(folder_.get(), kAside);
    }
    return moved;
}

Result<void> SafetyStore::keep(const Tree& root) const {
    const auto made = makeFolder(folder_.get(), path_, kNewSafety);
    VX_RETURN_IF_FAILED(made);
    auto kept = moveContents(root, made->get(), path_ + "/" + kNewSafety);
    if (kept && syncfs(made->get()) != 0) {
        kept = cannotWrite(path_ + "/" + kNewSafety, errno);
    }
    if (kept) {
        kept = replace();
    }
    if (!kept) {
        removeTree(folder_.get(), kNewSafety);
    }
    return kept;
}

Result<void> SafetyStore::replace() const {
    const std::string path = path_ + "/" + kSafety;
    const int folder = folder_.get();
    removeTree(folder, kOldSafety);
    if (renameat(folder, kSafety, folder, kOldSafety) != 0 && errno != ENOENT) {
        return cannotWrite(path, errno);
    }
    if (renameat(folder, kNewSafety, folder, kSafety) != 0) {
        const int reason = errno;
        renameat(folder, kOldSafety, folder, kSafety);
        return cannotWrite(path, reason);
    }
    if (fsync(folder) != 0) {
        return cannotWrite(path, errno);
    }
    removeTree(folder, kOldSafety);
    return {};
}

Result<void> SafetyStore::takeRoom() const {
    const Descriptor room(openat(
        folder_.get(), kRoom, O_WRONLY | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, S_IRUSR | S_IWUSR));
    if (!room.valid()) {
        return cannotWrite(path_ + "/" + kRoom, errno);
    }
    if (const int reason = posix_fallocate(room.get(), 0, off_t{kRoomForAnUndo}); reason != 0) {
        giveRoomBack();
        return cannotWrite(path_ + "/" + kRoom, reason);
    }
    return {};
}

void SafetyStore::giveRoomBack() const {
    unlinkat(folder_.get(), kRoom, 0);
}

std::string safetyPathIn(const std::filesystem::path& dataFolder) {
    return (dataFolder / kSafety).string();
}

void removeLeftovers(const std::filesystem::path& dataFolder) {
    const Descriptor folder(::open(dataFolder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!folder.valid()) {
        return;
    }
    // If the check fails, nothing is removed, because an apparent leftover may be the only safety backup.
    const auto there = hasEntry({folder.get(), dataFolder.string(), Place::Television}, kSafety);
    if (!there ||
        (!*there && renameat(folder.get(), kOldSafety, folder.get(), kSafety) != 0 && errno != ENOENT)) {
        return;
    }
    for (const char* const name : {kOldSafety, kNewSafety, kAside}) {
        removeTree(folder.get(), name);
    }
}

}  // namespace vxclone
