#include "cloning_app/run/compared_state.h"

#include <algorithm>
#include <array>
#include <utility>

#include "cloning_app/package/layout.h"
#include "cloning_app/run/category.h"
#include "cloning_app/run/setting_value.h"
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

void removeFolders(std::vector<PackageEntry>& entries) {
    entries.erase(std::remove_if(entries.begin(), entries.end(),
                                 [](const PackageEntry& entry) { return entry.folder; }),
                  entries.end());
}

bool holds(const ComparedState& package, const LiveFolder& folder) {
    return std::any_of(package.entries.begin(), package.entries.end(), [&folder](const PackageEntry& entry) {
        return categoryOfPath(entry.path) == categoryOf(folder.category).name;
    });
}

Result<void> addFiles(const LiveFolder& folder, std::vector<PackageEntry>& entries) {
    const std::string path = folder.path();
    const auto opened = openTelevisionFolder(path);
    if (!opened) {
        return tl::make_unexpected(opened.error());
    }
    if (!opened->valid()) {
        return {};
    }
    auto contents = readContents({opened->get(), path, Place::Television});
    if (!contents) {
        return tl::make_unexpected(contents.error());
    }
    for (PackageEntry& entry : contents->entries) {
        entry.path = std::string(folder.entry) + "/" + entry.path;
        entries.push_back(std::move(entry));
    }
    return {};
}

const LiveFolder& folderOf(VXClone category) {
    return *std::find_if(kLiveFolders.begin(), kLiveFolders.end(),
                         [category](const LiveFolder& folder) { return folder.category == category; });
}

bool isSeen(const PackageEntry& entry) {
    return std::any_of(kLiveFolders.begin(), kLiveFolders.end(), [&entry](const LiveFolder& folder) {
        return categoryOfPath(entry.path) == categoryOf(folder.category).name;
    });
}

}  // namespace

Result<ComparedState> stateOfPackage(const Tree& package) {
    auto settings = readSettings(package);
    if (!settings) {
        return tl::make_unexpected(settings.error());
    }
    auto contents = readContents(package);
    if (!contents) {
        return tl::make_unexpected(contents.error());
    }
    ComparedState state{settings->value_or(std::vector<Setting>{}), std::move(contents->entries)};
    removeFolders(state.entries);
    state.entries.erase(std::remove_if(state.entries.begin(), state.entries.end(),
                                       [](const PackageEntry& entry) { return entry.path == kSettingsFile; }),
                        state.entries.end());
    return state;
}

Result<ComparedState> stateOfTelevision(ComparedState& package) {
    ComparedState live{settingsOfTelevision(package.settings), {}};
    for (const LiveFolder& folder : kLiveFolders) {
        if (holds(package, folder)) {
            if (const auto added = addFiles(folder, live.entries); !added) {
                return tl::make_unexpected(added.error());
            }
        }
    }
    removeFolders(live.entries);
    std::sort(live.entries.begin(), live.entries.end(),
              [](const PackageEntry& one, const PackageEntry& other) { return one.path < other.path; });
    package.entries.erase(std::remove_if(package.entries.begin(), package.entries.end(),
                                         [](const PackageEntry& entry) { return !isSeen(entry); }),
                          package.entries.end());
    return live;
}

Result<std::vector<std::string>> homeMenuFilesNotIn(const Tree& root) {
    std::vector<PackageEntry> live;
    const auto contents = readContents(root);
    const auto added = contents ? addFiles(folderOf(VXCLONE_VXHOTEL_HOMEAPP_DATA), live)
                                : Result<void>(tl::make_unexpected(contents.error()));
    if (!added) {
        return tl::make_unexpected(added.error());
    }
    std::vector<std::string> missing;
    for (const PackageEntry& file : live) {
        const bool travels = !file.folder && std::count(file.path.begin(), file.path.end(), '/') == 1;
        const bool held = std::any_of(
            contents->entries.begin(), contents->entries.end(),
            [&](const auto& each) { return each.path == file.path && each.digest == file.digest; });
        if (travels && !held) {
            missing.push_back(file.path);
        }
    }
    return missing;
}

std::vector<std::string> categoriesSeen(const ComparedState& package) {
    std::vector<std::string> names;
    if (!package.settings.empty()) {
        names.emplace_back(categoryOf(VXCLONE_VCONF_DATA).name);
    }
    for (const LiveFolder& folder : kLiveFolders) {
        if (holds(package, folder)) {
            names.emplace_back(categoryOf(folder.category).name);
        }
    }
    return names;
}

}  // namespace vxclone
