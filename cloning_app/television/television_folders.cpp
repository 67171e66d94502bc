#include "cloning_app/television/television_folders.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <filesystem>
#include <optional>

#include "cloning_app/base/tree_walk.h"
#include "cloning_app/television/category.h"
#include "common/terminal_table.h"
#include "common/tree_removal.h"

namespace vxclone {

namespace {

constexpr const char* kNothingChanged = "; nothing was changed; ";

tl::unexpected<Error> unsafe(const std::string& path, const std::string& what, const std::string& nextStep) {
    return failure(ErrorCode::UnsafeTelevision,
                   vxcommon::printable(path) + " " + what + kNothingChanged + nextStep);
}

/// What an entry is that is neither file nor folder.
std::optional<std::string> specialKind(mode_t mode) {
    switch (mode & S_IFMT) {
        case S_IFREG:
        case S_IFDIR:
            return std::nullopt;
        case S_IFLNK:
            return "is a link, and what it leads to is not the television's";
        case S_IFIFO:
            return "is a pipe, at which the run would wait for ever";
        default:
            return "is a special file, not a file or a folder";
    }
}

Result<void> checkEntry(const Tree& folder, const std::string& name) {
    const std::string path = folder.path + "/" + name;
    struct stat facts {};
    if (fstatat(folder.descriptor, name.c_str(), &facts, AT_SYMLINK_NOFOLLOW) != 0) {
        return errno == ENOENT ? Result<void>() : tl::make_unexpected(readError(folder.place, path, errno));
    }
    const auto kind = specialKind(facts.st_mode);
    return kind ? unsafe(path, *kind, "remove it and try again") : Result<void>();
}

/// The home menu, and the names in it; no descriptor stands for a television that has none.
struct HomeMenu {
    Descriptor folder;
    std::string path;
    std::vector<std::string> names;

    Tree tree() const { return {folder.get(), path, Place::Television}; }
};

Result<HomeMenu> openHomeMenu() {
    HomeMenu menu{Descriptor(), categoryOf(VXCLONE_VXHOTEL_HOMEAPP_DATA).folder(), {}};
    // The name that people are told ends without a slash.
    menu.path.erase(menu.path.find_last_not_of('/') + 1);
    auto folder = openTelevisionFolder(menu.path);
    VX_RETURN_IF_FAILED(folder);
    menu.folder = std::move(*folder);
    if (menu.folder.valid()) {
        auto names = namesIn(menu.tree(), TreeLimits{}.entries);
        VX_RETURN_IF_FAILED(names);
        menu.names = std::move(*names);
    }
    return menu;
}

Result<void> checkHomeMenu() {
    const auto menu = openHomeMenu();
    if (!menu) {
        // What else stands in the way of reading it, the run itself meets and tells.
        const bool leadsOut = menu.error().code == ErrorCode::UnsafeTelevision;
        return leadsOut ? tl::make_unexpected(menu.error()) : Result<void>();
    }
    for (const std::string& name : menu->names) {
        if (auto checked = checkEntry(menu->tree(), name); !checked) {
            return checked;
        }
    }
    return {};
}

Result<void> judge(const vxcommon::Removal& search, const std::filesystem::path& from) {
    if (search) {
        return {};
    }
    const std::string path = (from / search.error().path).string();
    return unsafe(path, "is another file system, which would be emptied",
                  "unmount it (umount " + vxcommon::printable(path) + ") and try again");
}

/// The library removes a logo's folder, and of the clone folder what is in it.
Result<void> checkUnmounted(const std::filesystem::path& cloneRoot) {
    for (const Category& category : categories()) {
        const std::filesystem::path folder =
            category.removal == Removal::Never ? std::string() : category.folder();
        if (folder.empty()) {
            continue;
        }
        const std::filesystem::path own = folder.has_filename() ? folder : folder.parent_path();
        if (auto unmounted = judge(vxcommon::findMountIn(own), own.parent_path()); !unmounted) {
            return unmounted;
        }
    }
    const Descriptor root(open(cloneRoot.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    return root.valid() ? judge(vxcommon::findMountInContents(root.get()), cloneRoot) : Result<void>();
}

}  // namespace

Result<void> checkSafe(const std::filesystem::path& cloneRoot) {
    const auto unmounted = checkUnmounted(cloneRoot);
    return unmounted ? checkHomeMenu() : unmounted;
}

Result<std::vector<std::string>> homeMenuFoldersLeftOut() {
    const auto menu = openHomeMenu();
    VX_RETURN_IF_FAILED(menu);
    std::vector<std::string> folders;
    for (const std::string& name : menu->names) {
        struct stat facts {};
        if (fstatat(menu->folder.get(), name.c_str(), &facts, AT_SYMLINK_NOFOLLOW) == 0 &&
            S_ISDIR(facts.st_mode)) {
            folders.push_back(name);
        }
    }
    return folders;
}

Result<Descriptor> openTelevisionFolder(const std::string& path) {
    if (path.empty()) {
        return failure(ErrorCode::TelevisionIo,
                       "the television does not say where its logos and its home menu are; switch it off and "
                       "on, then try again");
    }
    // A slash at the end would follow a link in the folder's place.
    const std::string own = path.substr(0, path.find_last_not_of('/') + 1);
    Descriptor folder(open(own.c_str(), kOpenFolder));
    struct stat facts {};
    if (!folder.valid() && lstat(own.c_str(), &facts) == 0 && S_ISLNK(facts.st_mode)) {
        return failure(ErrorCode::UnsafeTelevision,
                       vxcommon::printable(own) +
                           " is a link, and what it leads to is not the television's; "
                           "put the folder itself there and try again");
    }
    if (!folder.valid() && errno != ENOENT) {
        return tl::make_unexpected(readError(Place::Television, path, errno));
    }
    return folder;
}

}  // namespace vxclone
