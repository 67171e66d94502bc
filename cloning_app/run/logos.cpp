#include "cloning_app/run/logos.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "cloning_app/base/disk_space.h"
#include "cloning_app/television/television_folders.h"

namespace vxclone {

namespace {

constexpr mode_t kFolderMode = 0777;

/// The library restores the files directly in the folder and no others.
TreeLimits logoLimits() {
    TreeLimits limits;
    limits.depth = 1;
    return limits;
}

Result<TreeSize> copyLogo(const Tree& logo, const Tree& root, const std::string& entry,
                          const StopFlag& stop) {
    const std::string path = root.path + entry;
    const Descriptor made(
        openat(root.descriptor, entry.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    if (!made.valid()) {
        return tl::make_unexpected(writeError(root.place, path, errno));
    }
    auto copied =
        copyTree(logo, {made.get(), path, root.place}, logoLimits(), Flush::No, realDiskCalls(), stop);
    if (!copied) {
        removeTree(root.descriptor, entry);
    }
    return copied;
}

Row failed(const Category& logo, const Error& error) {
    return {logo.value, Verdict::Failed, error.sentence};
}

Row saveLogo(const Category& logo, const Tree& root, const StopFlag& stop) {
    const std::string entry(logo.entry);
    const std::string path = logo.folder();
    const auto folder = openTelevisionFolder(path);
    if (!folder) {
        return failed(logo, folder.error());
    }
    if (!folder->valid()) {
        return {logo.value, Verdict::NotReported, "this television has none"};
    }
    if (mkdirat(root.descriptor, entry.c_str(), kFolderMode) != 0) {
        return failed(logo, writeError(root.place, root.path + entry, errno));
    }
    const auto copied = copyLogo({folder->get(), path, Place::Television}, root, entry, stop);
    return copied ? Row{logo.value, Verdict::Done, "added by vxclone, " + countText(copied->files, "file")}
                  : failed(logo, copied.error());
}

}  // namespace

std::vector<Row> saveLogos(const Tree& root, const StopFlag& stop) {
    std::vector<Row> rows;
    for (const Category& category : categories()) {
        if (category.inBackup == Handling::Added) {
            rows.push_back(saveLogo(category, root, stop));
        }
    }
    return rows;
}

bool hasLogo(VXClone category) {
    const auto folder = openTelevisionFolder(categoryOf(category).folder());
    return !folder || folder->valid();
}

void removeEmptyLogo(VXClone category) {
    const std::string path = categoryOf(category).folder();
    if (!path.empty()) {
        rmdir(path.c_str());
    }
}

}  // namespace vxclone
