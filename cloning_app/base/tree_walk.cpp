#include "cloning_app/base/tree_walk.h"

#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <memory>
#include <string_view>

#include "common/terminal_table.h"
#include "common/tree_removal.h"

namespace vxclone {

namespace {

constexpr std::array<std::string_view, 4> kSidecars = {".DS_Store", "Thumbs.db", "desktop.ini",
                                                       "System Volume Information"};
constexpr std::string_view kSidecarPrefix = "._";

constexpr int kOpenFile = O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC;
constexpr const char* kSpecial = "a link or a special file";

struct CloseFolder {
    void operator()(DIR* folder) const { closedir(folder); }
};
using OpenFolder = std::unique_ptr<DIR, CloseFolder>;

OpenFolder listingOf(int directory) {
    const int again = openat(directory, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (again < 0) {
        return nullptr;
    }
    OpenFolder folder(fdopendir(again));
    if (!folder) {
        close(again);
    }
    return folder;
}

/// The advice about a folder that contains too much.
std::string adviceOn(Place place) {
    return place == Place::Stick ? "; choose the folder of a clone package"
                                 : "; remove some files from the television";
}

/// The names in a folder, or the system's reason (errno).
tl::expected<std::vector<std::string>, int> listNames(int directory, std::size_t most) {
    const OpenFolder folder = listingOf(directory);
    if (!folder) {
        return tl::make_unexpected(errno);
    }
    std::vector<std::string> names;
    errno = 0;
    while (const dirent* const entry = readdir(folder.get())) {
        std::string name = entry->d_name;
        if (name != "." && name != "..") {
            names.push_back(std::move(name));
        }
        if (names.size() > most) {
            return tl::make_unexpected(E2BIG);
        }
        errno = 0;
    }
    if (errno != 0) {
        return tl::make_unexpected(errno);
    }
    std::sort(names.begin(), names.end());
    return names;
}

class Walk {
 public:
    Walk(Place place, const TreeLimits& limits, TreeVisitor& visitor, dev_t device)
        : place_(place), limits_(limits), visitor_(visitor), device_(device) {}

    Result<void> folder(int directory, const std::string& path, std::size_t depth) {
        const auto names = namesIn({directory, path, place_}, limits_.entries);
        VX_RETURN_IF_FAILED(names);
        for (const std::string& name : *names) {
            if (place_ == Place::Stick && isSidecar(name)) {
                continue;
            }
            if (auto visited = visit(directory, name, path + "/" + name, depth); !visited) {
                return visited;
            }
        }
        return {};
    }

 private:
    Result<void> visit(int directory, const std::string& name, std::string path, std::size_t depth) {
        if (++entries_ > limits_.entries || depth > limits_.depth || name.size() > limits_.nameBytes) {
            return tooLarge(path, "holds more, deeper or longer names than a package does");
        }
        struct stat facts {};
        if (fstatat(directory, name.c_str(), &facts, AT_SYMLINK_NOFOLLOW) != 0) {
            return tl::make_unexpected(readError(place_, path, errno));
        }
        if (S_ISDIR(facts.st_mode)) {
            return visitFolder(directory, name, std::move(path), depth);
        }
        if (S_ISREG(facts.st_mode)) {
            return visitFile(directory, name, std::move(path));
        }
        return unsafe(path, kSpecial);
    }

    Result<void> visitFolder(int directory, const std::string& name, std::string path, std::size_t depth) {
        const Descriptor opened(openat(directory, name.c_str(), kOpenFolder));
        struct stat facts {};
        if (!opened.valid() || fstat(opened.get(), &facts) != 0) {
            return tl::make_unexpected(readError(place_, path, errno));
        }
        if (facts.st_dev != device_) {
            return unsafe(path, "another file system");
        }
        if (auto entered = visitor_.enterFolder({name, path, 0}); !entered) {
            return entered;
        }
        if (auto walked = folder(opened.get(), path, depth + 1); !walked) {
            return walked;
        }
        return visitor_.leaveFolder();
    }

    Result<void> visitFile(int directory, const std::string& name, std::string path) {
        const Descriptor opened(openat(directory, name.c_str(), kOpenFile));
        struct stat facts {};
        if (!opened.valid() || fstat(opened.get(), &facts) != 0) {
            return tl::make_unexpected(readError(place_, path, errno));
        }
        if (!S_ISREG(facts.st_mode)) {
            return unsafe(path, kSpecial);
        }
        const auto bytes = static_cast<std::uint64_t>(facts.st_size);
        bytes_ += bytes;
        if (bytes > limits_.fileBytes || bytes_ > limits_.totalBytes) {
            return tooLarge(path, "is larger than a package is");
        }
        return visitor_.file({name, std::move(path), bytes}, opened.get());
    }

    tl::unexpected<Error> unsafe(const std::string& path, const std::string& what) const {
        return failure(ErrorCode::UnsafeEntry,
                       vxcommon::printable(path) + " is " + what + ", which no package holds; " +
                           (place_ == Place::Stick ? "make the package again with vxclone backup"
                                                   : "take it away and try again"));
    }

    tl::unexpected<Error> tooLarge(const std::string& path, const std::string& why) const {
        return failure(ErrorCode::TooLarge, vxcommon::printable(path) + " " + why + adviceOn(place_));
    }

    Place place_;
    const TreeLimits& limits_;
    TreeVisitor& visitor_;
    dev_t device_;
    std::size_t entries_ = 0;
    std::uint64_t bytes_ = 0;
};

int reasonOf(const vxcommon::Removal& removal) {
    return removal ? 0 : removal.error().reason;
}

Error mountedError(const Tree& folder, const std::string& entry) {
    const std::string path = vxcommon::printable((std::filesystem::path(folder.path) / entry).string());
    return {folder.place == Place::Stick ? ErrorCode::UnsafeEntry : ErrorCode::TelevisionIo,
            "another file system is mounted at " + path +
                ", and what lies on it is not removed; unmount it (umount " + path + ") and try again"};
}

}  // namespace

Result<std::vector<std::string>> namesIn(const Tree& folder, std::size_t most) {
    auto names = listNames(folder.descriptor, most);
    if (names) {
        return std::move(*names);
    }
    if (names.error() == E2BIG) {
        return failure(ErrorCode::TooLarge, vxcommon::printable(folder.path) + " holds more than " +
                                                std::to_string(most) + " entries" + adviceOn(folder.place));
    }
    return tl::make_unexpected(readError(folder.place, folder.path, names.error()));
}

Result<Descriptor> openOnTelevision(const std::filesystem::path& folder) {
    Descriptor opened(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!opened.valid()) {
        return tl::make_unexpected(readError(Place::Television, folder.string(), errno));
    }
    return opened;
}

bool isSidecar(std::string_view name) {
    return name.substr(0, kSidecarPrefix.size()) == kSidecarPrefix ||
           std::find(kSidecars.begin(), kSidecars.end(), name) != kSidecars.end();
}

Result<void> walkTree(const Tree& tree, const TreeLimits& limits, TreeVisitor& visitor) {
    struct stat facts {};
    if (fstat(tree.descriptor, &facts) != 0) {
        return tl::make_unexpected(readError(tree.place, tree.path, errno));
    }
    return Walk(tree.place, limits, visitor, facts.st_dev).folder(tree.descriptor, tree.path, 1);
}

bool meansAbsent(int reason) {
    return reason == ENOENT || reason == ENAMETOOLONG;
}

Result<bool> hasEntry(const Tree& folder, const std::string& name) {
    if (faccessat(folder.descriptor, name.c_str(), F_OK, AT_SYMLINK_NOFOLLOW) == 0) {
        return true;
    }
    if (meansAbsent(errno)) {
        return false;
    }
    return tl::make_unexpected(
        readError(folder.place, (std::filesystem::path(folder.path) / name).string(), errno));
}

int removeTree(int directory, const std::string& name) {
    return reasonOf(vxcommon::removeTree(directory, name));
}

int removeContents(int directory) {
    return reasonOf(vxcommon::removeContents(directory));
}

Result<void> checkRemovable(const Tree& folder, const std::string& name) {
    const auto mount = vxcommon::findMountIn(folder.descriptor, name);
    return mount ? Result<void>() : tl::make_unexpected(mountedError(folder, mount.error().path));
}

Result<void> checkContentsRemovable(const Tree& folder) {
    const auto mount = vxcommon::findMountInContents(folder.descriptor);
    return mount ? Result<void>() : tl::make_unexpected(mountedError(folder, mount.error().path));
}

}  // namespace vxclone
