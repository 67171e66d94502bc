#include "common/tree_removal.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <functional>
#include <optional>
#include <system_error>
#include <utility>
#include <vector>

#include "common/descriptor.h"

namespace vxcommon {

namespace {

constexpr int kOpenToRemove = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;

/// The identity of an entry, and the mount where it is.
struct EntryFacts {
    bool folder = false;
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    std::uint64_t mount = 0;  ///< 0 if the system does not report it

    bool isSameAs(const EntryFacts& other) const {
        return device == other.device && inode == other.inode && mount == other.mount;
    }
    /// On overlay file systems a file may have another device number than its folder.
    bool isMountedWith(const EntryFacts& other) const {
        return mount == other.mount && (!folder || device == other.device);
    }
};

/// The facts of an entry of the folder, or of the folder itself if the name is empty. Empty on failure, with
/// errno.
std::optional<EntryFacts> factsOf(int directory, const char* name) {
    constexpr unsigned kDeviceBits = 32;
    struct statx found {};
    const int flags = AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT | AT_EMPTY_PATH;
    if (statx(directory, name, flags, STATX_BASIC_STATS | STATX_MNT_ID, &found) != 0) {
        return std::nullopt;
    }
    const bool toldMount = (found.stx_mask & STATX_MNT_ID) != 0;
    return EntryFacts{.folder = S_ISDIR(found.stx_mode),
                      .device = std::uint64_t{found.stx_dev_major} << kDeviceBits | found.stx_dev_minor,
                      .inode = found.stx_ino,
                      .mount = toldMount ? found.stx_mnt_id : 0};
}

/// The names in the folder, or the system's reason (errno).
tl::expected<std::vector<std::string>, int> namesWithin(int directory) {
    const int again = openat(directory, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    DIR* const listing = again < 0 ? nullptr : fdopendir(again);
    if (listing == nullptr) {
        const int reason = errno;
        const Descriptor unlisted(again);
        return tl::make_unexpected(reason);
    }
    std::vector<std::string> names;
    errno = 0;
    while (const dirent* const entry = readdir(listing)) {
        const std::string name = entry->d_name;
        if (name != "." && name != "..") {
            names.push_back(name);
        }
        errno = 0;
    }
    const int reason = errno;
    closedir(listing);
    return reason == 0 ? tl::expected<std::vector<std::string>, int>(std::move(names))
                       : tl::make_unexpected(reason);
}

enum class Purpose { Look, Remove };

/// Walks through a tree with only one open folder at any depth. It goes back up through "..", and stops if
/// that is not the folder that it came from.
class Descent {
 public:
    Descent(Purpose purpose, const EntryFacts& began) : purpose_(purpose), began_(began) {}

    /// Removes an entry of `directory` and everything below it.
    Removal entry(int directory, const std::string& name) {
        folder_ = Descriptor(openat(directory, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        if (!folder_.valid()) {
            note(name, errno);
            return result();
        }
        levels_.push_back({"", began_, {name}});
        return run();
    }

    /// Removes everything in `directory`.
    Removal contents(int directory) {
        folder_ = Descriptor(openat(directory, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        auto names = folder_.valid() ? namesWithin(folder_.get()) : tl::make_unexpected(errno);
        if (!names) {
            note("", names.error());
            return result();
        }
        levels_.push_back({"", began_, std::move(*names)});
        return run();
    }

 private:
    struct Level {
        std::string name;
        EntryFacts facts;
        std::vector<std::string> left;  ///< names that are not visited yet
    };

    Removal run() {
        while (!levels_.empty() && !ended_) {
            if (levels_.back().left.empty()) {
                leave();
                continue;
            }
            const std::string name = std::move(levels_.back().left.back());
            levels_.back().left.pop_back();
            visit(name);
        }
        return result();
    }

    void visit(const std::string& name) {
        const auto facts = factsOf(folder_.get(), name.c_str());
        if (!facts) {
            noteUnlessGone(name, errno);
        } else if (!facts->isMountedWith(began_)) {
            endAtMount(name);
        } else if (facts->folder) {
            enter(name);
        } else if (purpose_ == Purpose::Remove && unlinkat(folder_.get(), name.c_str(), 0) != 0) {
            noteUnlessMounted(name, errno);
        }
    }

    void enter(const std::string& name) {
        Descriptor opened(openat(folder_.get(), name.c_str(), kOpenToRemove));
        const int reason = opened.valid() ? 0 : errno;
        const auto facts = opened.valid() ? factsOf(opened.get(), "") : std::nullopt;
        if (facts && !facts->isMountedWith(began_)) {
            endAtMount(name);
            return;
        }
        auto names = facts ? namesWithin(opened.get())
                           : tl::expected<std::vector<std::string>, int>(
                                 tl::make_unexpected(reason != 0 ? reason : errno));
        if (!names) {
            // The folder cannot be read, but it can be removed if it is empty.
            const bool gone =
                purpose_ == Purpose::Remove && unlinkat(folder_.get(), name.c_str(), AT_REMOVEDIR) == 0;
            if (!gone) {
                noteUnlessGone(name, names.error());
            }
            return;
        }
        folder_ = std::move(opened);
        levels_.push_back({name, *facts, std::move(*names)});
    }

    void leave() {
        const std::string name = levels_.back().name;
        levels_.pop_back();
        if (levels_.empty() || !goUp(name)) {
            return;
        }
        if (purpose_ == Purpose::Remove && unlinkat(folder_.get(), name.c_str(), AT_REMOVEDIR) != 0) {
            noteUnlessMounted(name, errno);
        }
    }

    /// Closes the folder first, because removing an open folder takes longer.
    bool goUp(const std::string& name) {
        Descriptor above(openat(folder_.get(), "..", kOpenToRemove));
        const auto facts = above.valid() ? factsOf(above.get(), "") : std::nullopt;
        if (facts && !facts->isMountedWith(began_)) {
            // Something was mounted over the folder above, so ".." leads to it.
            endAtMount("");
            return false;
        }
        if (!facts || !facts->isSameAs(levels_.back().facts)) {
            trouble_ = RemovalTrouble{pathOf(name), facts ? ESTALE : errno};
            ended_ = true;
            return false;
        }
        folder_ = std::move(above);
        return true;
    }

    void endAtMount(const std::string& name) {
        trouble_ = RemovalTrouble{pathOf(name), EXDEV};
        ended_ = true;
    }

    /// The system reports EBUSY if something is mounted on the entry.
    void noteUnlessMounted(const std::string& name, int reason) {
        const auto facts = reason == EBUSY ? factsOf(folder_.get(), name.c_str()) : std::nullopt;
        if (facts && !facts->isMountedWith(began_)) {
            endAtMount(name);
        } else {
            noteUnlessGone(name, reason);
        }
    }

    void noteUnlessGone(const std::string& name, int reason) {
        if (reason != ENOENT) {
            note(name, reason);
        }
    }

    void note(const std::string& name, int reason) {
        if (!trouble_) {
            trouble_ = RemovalTrouble{pathOf(name), reason};
        }
    }

    std::string pathOf(const std::string& name) const {
        std::string path;
        for (const Level& level : levels_) {
            path += level.name + (level.name.empty() ? "" : "/");
        }
        path += name;
        if (!path.empty() && path.back() == '/') {
            path.pop_back();
        }
        return path;
    }

    Removal result() const {
        const bool counts = trouble_ && (purpose_ == Purpose::Remove || trouble_->reason == EXDEV);
        return counts ? Removal(tl::make_unexpected(*trouble_)) : Removal();
    }

    Purpose purpose_;
    EntryFacts began_;
    Descriptor folder_;
    std::vector<Level> levels_;
    std::optional<RemovalTrouble> trouble_;
    bool ended_ = false;
};

Removal descend(Purpose purpose, int directory, const std::string* name) {
    const auto began = factsOf(directory, "");
    if (!began) {
        const bool counts = purpose == Purpose::Remove;
        return counts ? Removal(tl::make_unexpected(RemovalTrouble{name != nullptr ? *name : "", errno}))
                      : Removal();
    }
    Descent descent(purpose, *began);
    return name != nullptr ? descent.entry(directory, *name) : descent.contents(directory);
}

Removal lookAndRemove(int directory, const std::string* name) {
    return descend(Purpose::Look, directory, name).and_then([&] {
        return descend(Purpose::Remove, directory, name);
    });
}

Removal inParentOf(const std::filesystem::path& path,
                   const std::function<Removal(int directory, const std::string& name)>& work) {
    const std::filesystem::path whole = path.has_filename() ? path : path.parent_path();
    if (!whole.has_filename() || whole.filename() == "." || whole.filename() == "..") {
        return tl::make_unexpected(RemovalTrouble{path.string(), EINVAL});
    }
    const std::string parent = whole.has_parent_path() ? whole.parent_path().string() : ".";
    const Descriptor opened(open(parent.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (opened.valid()) {
        return work(opened.get(), whole.filename().string());
    }
    return errno == ENOENT ? Removal()
                           : tl::make_unexpected(RemovalTrouble{whole.filename().string(), errno});
}

}  // namespace

std::string RemovalTrouble::text() const {
    return reason == EXDEV ? "another file system is mounted there" : std::generic_category().message(reason);
}

Removal removeTree(int directory, const std::string& name) {
    return lookAndRemove(directory, &name);
}

Removal removeContents(int directory) {
    return lookAndRemove(directory, nullptr);
}

Removal removeTree(const std::filesystem::path& path) {
    return inParentOf(path,
                      [](int directory, const std::string& name) { return removeTree(directory, name); });
}

Removal findMountIn(int directory, const std::string& name) {
    return descend(Purpose::Look, directory, &name);
}

Removal findMountInContents(int directory) {
    return descend(Purpose::Look, directory, nullptr);
}

Removal findMountIn(const std::filesystem::path& path) {
    return inParentOf(path,
                      [](int directory, const std::string& name) { return findMountIn(directory, name); });
}

}  // namespace vxcommon
