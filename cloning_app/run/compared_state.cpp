#include "cloning_app/run/compared_state.h"

#include <algorithm>
#include <array>
#include <utility>

#include "cloning_app/package/layout.h"
#include "cloning_app/run/category.h"
#include "cloning_app/run/television_folder.h"
#include "platform/vx_paths.h"

namespace vxclone {

namespace {

/// A folder of the television that travels file by file.
struct LiveFolder {
    VXClone category;
    std::string_view entry;  ///< its name in a package
    std::string (*path)();
};

constexpr std::array kLiveFolders = {
    LiveFolder{VXCLONE_HOSPITALITY_LOGO, "logo", vx_get_bootlogo_path},
    LiveFolder{VXCLONE_VXHOTEL_HOMEAPP_DATA, "VXHotel", vx_get_homemenu_path},
    LiveFolder{VXCLONE_VXHOTEL_MBR_LOGO, "VXMBRLogo", vx_get_mbrlogo_path},
};

const LiveFolder* liveFolderOf(VXClone category) {
    const auto* const found =
        std::find_if(kLiveFolders.begin(), kLiveFolders.end(),
                     [category](const LiveFolder& folder) { return folder.category == category; });
    return found == kLiveFolders.end() ? nullptr : found;
}

}  // namespace

Result<ComparedState> stateOfPackage(const Tree& package) {
    auto settings = readSettings(package);
    if (!settings) {
        return tl::make_unexpected(settings.error());
    }
    auto files = filesOf(package);
    if (!files) {
        return tl::make_unexpected(files.error());
    }
    return ComparedState{settings->value_or(std::vector<Setting>{}), std::move(*files)};
}

Result<std::vector<PackageEntry>> filesOf(const Tree& package) {
    auto contents = readContents(package);
    if (!contents) {
        return tl::make_unexpected(contents.error());
    }
    std::vector<PackageEntry>& files = contents->entries;
    files.erase(
        std::remove_if(files.begin(), files.end(),
                       [](const PackageEntry& entry) { return entry.folder || entry.path == kSettingsFile; }),
        files.end());
    return std::move(files);
}

bool isFolderOfTelevision(VXClone category) {
    return liveFolderOf(category) != nullptr;
}

Result<std::vector<PackageEntry>> filesOfTelevision(VXClone category) {
    const LiveFolder& folder = *liveFolderOf(category);
    const std::string path = folder.path();
    const auto opened = openTelevisionFolder(path);
    if (!opened) {
        return tl::make_unexpected(opened.error());
    }
    if (!opened->valid()) {
        return std::vector<PackageEntry>();
    }
    auto contents = readContents({opened->get(), path, Place::Television});
    if (!contents) {
        return tl::make_unexpected(contents.error());
    }
    std::vector<PackageEntry> files;
    for (PackageEntry& entry : contents->entries) {
        if (!entry.folder && entry.path.find('/') == std::string::npos) {
            files.push_back(std::move(entry));
            files.back().path.insert(0, std::string(folder.entry) + "/");
        }
    }
    return files;
}

Result<std::vector<std::string>> homeMenuFilesNotIn(const Tree& root) {
    const auto held = filesOf(root);
    if (!held) {
        return tl::make_unexpected(held.error());
    }
    const auto live = filesOfTelevision(VXCLONE_VXHOTEL_HOMEAPP_DATA);
    if (!live) {
        return tl::make_unexpected(live.error());
    }
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

}  // namespace vxclone
