#include "cloning_app/run/added_files.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "cloning_app/run/category.h"
#include "cloning_app/run/television_folder.h"
#include "platform/vx_paths.h"

namespace vxclone {

namespace {

/// The files directly in the folder, by their names.
Result<std::vector<PackageEntry>> filesIn(const Tree& folder) {
    auto contents = readContents(folder);
    if (!contents) {
        return tl::make_unexpected(contents.error());
    }
    std::vector<PackageEntry> files = std::move(contents->entries);
    files.erase(std::remove_if(files.begin(), files.end(),
                               [](const PackageEntry& entry) {
                                   return entry.folder || entry.path.find('/') != std::string::npos;
                               }),
                files.end());
    return files;
}

std::string prefix() {
    return std::string(categoryOf(VXCLONE_VXHOTEL_HOMEAPP_DATA).entry) + "/";
}

/// Whether the entry of a package is a file that the library copies into the home menu.
bool goesToHomeMenu(const PackageEntry& entry) {
    const std::string folder = prefix();
    return !entry.folder && entry.path.rfind(folder, 0) == 0 &&
           entry.path.find('/', folder.size()) == std::string::npos;
}

}  // namespace

Result<std::vector<PackageEntry>> filesAddedBy(const Tree& package) {
    const std::string path = vx_get_homemenu_path();
    const auto folder = openTelevisionFolder(path);
    if (!folder) {
        return tl::make_unexpected(folder.error());
    }
    auto contents = readContents(package);
    if (!contents) {
        return tl::make_unexpected(contents.error());
    }
    std::vector<PackageEntry> added;
    for (PackageEntry& entry : contents->entries) {
        if (!folder->valid() || !goesToHomeMenu(entry)) {
            continue;
        }
        const auto there =
            hasEntry({folder->get(), path, Place::Television}, entry.path.substr(prefix().size()));
        if (!there) {
            return tl::make_unexpected(there.error());
        }
        if (!*there) {
            added.push_back(std::move(entry));
        }
    }
    return added;
}

Result<std::size_t> removeAdded(const std::vector<PackageEntry>& added) {
    if (added.empty()) {
        return std::size_t{0};
    }
    const std::string path = vx_get_homemenu_path();
    const auto folder = openTelevisionFolder(path);
    if (!folder) {
        return tl::make_unexpected(folder.error());
    }
    if (!folder->valid()) {
        return std::size_t{0};
    }
    const auto files = filesIn({folder->get(), path, Place::Television});
    if (!files) {
        return tl::make_unexpected(files.error());
    }
    std::size_t removed = 0;
    for (const PackageEntry& file : *files) {
        const bool isAdded = std::any_of(added.begin(), added.end(), [&file](const PackageEntry& each) {
            return goesToHomeMenu(each) && each.path == prefix() + file.path && each.digest == file.digest;
        });
        if (!isAdded) {
            continue;
        }
        if (unlinkat(folder->get(), file.path.c_str(), 0) != 0) {
            return tl::make_unexpected(writeError(Place::Television, path + "/" + file.path, errno));
        }
        ++removed;
    }
    return removed;
}

}  // namespace vxclone
