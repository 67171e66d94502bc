#include "cloning_app/check/compared_state.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <utility>

#include "cloning_app/package/layout.h"
#include "cloning_app/television/television_folders.h"

namespace vxclone {

namespace {

/// The files directly in the folder, by name.
Result<std::vector<PackageEntry>> filesIn(const Tree& folder) {
    auto contents = readContents(folder);
    VX_RETURN_IF_FAILED(contents);
    std::vector<PackageEntry> files = std::move(contents->entries);
    files.erase(std::remove_if(files.begin(), files.end(),
                               [](const PackageEntry& entry) {
                                   return entry.folder || entry.path.find('/') != std::string::npos;
                               }),
                files.end());
    return files;
}

const Category& homeMenu() {
    return categoryOf(VXCLONE_VXHOTEL_HOMEAPP_DATA);
}

std::string prefix() {
    return std::string(homeMenu().entry) + "/";
}

/// Whether the library copies this entry of a package into the home menu.
bool goesToHomeMenu(const PackageEntry& entry) {
    const std::string folder = prefix();
    return !entry.folder && entry.path.rfind(folder, 0) == 0 &&
           entry.path.find('/', folder.size()) == std::string::npos;
}

}  // namespace

Result<ComparedState> stateOfPackage(const Tree& package) {
    auto settings = readSettings(package);
    VX_RETURN_IF_FAILED(settings);
    auto files = filesOf(package);
    VX_RETURN_IF_FAILED(files);
    return ComparedState{settings->value_or(std::vector<Setting>{}), std::move(*files)};
}

Result<std::vector<PackageEntry>> filesOf(const Tree& package) {
    auto contents = readContents(package);
    VX_RETURN_IF_FAILED(contents);
    std::vector<PackageEntry>& files = contents->entries;
    files.erase(
        std::remove_if(files.begin(), files.end(),
                       [](const PackageEntry& entry) { return entry.folder || entry.path == kSettingsFile; }),
        files.end());
    return std::move(files);
}

Result<std::vector<PackageEntry>> filesOfTelevision(const Category& category) {
    const std::string path = category.folder();
    const auto opened = openTelevisionFolder(path);
    VX_RETURN_IF_FAILED(opened);
    if (!opened->valid()) {
        return std::vector<PackageEntry>();
    }
    auto contents = readContents({opened->get(), path, Place::Television});
    VX_RETURN_IF_FAILED(contents);
    std::vector<PackageEntry> files;
    for (PackageEntry& entry : contents->entries) {
        if (!entry.folder && entry.path.find('/') == std::string::npos) {
            files.push_back(std::move(entry));
            files.back().path.insert(0, std::string(category.entry) + "/");
        }
    }
    return files;
}

Result<std::vector<std::string>> homeMenuFilesNotIn(const Tree& root) {
    const auto held = filesOf(root);
    VX_RETURN_IF_FAILED(held);
    const auto live = filesOfTelevision(homeMenu());
    VX_RETURN_IF_FAILED(live);
    std::vector<std::string> missing;
    for (const PackageEntry& file : *live) {
        const auto same = std::lower_bound(
            held->begin(), held->end(), file.path,
            [](const PackageEntry& each, const std::string& wanted) { return each.path < wanted; });
        if (same == held->end() || same->path != file.path || same->digest != file.digest) {
            missing.push_back(file.path);
        }
    }
    return missing;
}

Result<std::vector<PackageEntry>> filesAddedBy(const Tree& package) {
    const std::string path = homeMenu().folder();
    const auto folder = openTelevisionFolder(path);
    VX_RETURN_IF_FAILED(folder);
    auto contents = readContents(package);
    VX_RETURN_IF_FAILED(contents);
    std::vector<PackageEntry> added;
    for (PackageEntry& entry : contents->entries) {
        if (!folder->valid() || !goesToHomeMenu(entry)) {
            continue;
        }
        const auto there =
            hasEntry({folder->get(), path, Place::Television}, entry.path.substr(prefix().size()));
        VX_RETURN_IF_FAILED(there);
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
    const std::string path = homeMenu().folder();
    const auto folder = openTelevisionFolder(path);
    VX_RETURN_IF_FAILED(folder);
    if (!folder->valid()) {
        return std::size_t{0};
    }
    const auto files = filesIn({folder->get(), path, Place::Television});
    VX_RETURN_IF_FAILED(files);
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
