#include "cloning_app/storage/own_folders.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <optional>
#include <utility>
#include <vector>

namespace vxclone {

namespace {

struct FolderIdentity {
    dev_t device;
    ino_t inode;

    bool operator==(const FolderIdentity& other) const {
        return device == other.device && inode == other.inode;
    }
};

/// The identity of the entry, without following a link; "." is the folder itself.
std::optional<FolderIdentity> identityOf(int folder, const char* name) {
    struct stat facts {};
    if (fstatat(folder, name, &facts, AT_SYMLINK_NOFOLLOW) != 0) {
        return std::nullopt;
    }
    return FolderIdentity{facts.st_dev, facts.st_ino};
}

/// The folder and all its parents.
std::vector<FolderIdentity> lineageOf(int folder) {
    std::vector<FolderIdentity> lineage;
    Descriptor current(openat(folder, ".", kOpenFolder));
    while (current.valid()) {
        const auto identity = identityOf(current.get(), ".");
        if (!identity || (!lineage.empty() && lineage.back() == *identity)) {
            break;
        }
        lineage.push_back(*identity);
        current = Descriptor(openat(current.get(), "..", kOpenFolder));
    }
    return lineage;
}

bool holds(const std::vector<FolderIdentity>& list, const FolderIdentity& wanted) {
    return std::find(list.begin(), list.end(), wanted) != list.end();
}

/// The data folder, the clone folder, and the folders beside it.
std::vector<FolderIdentity> ownFolders(const Descriptor& data, const std::filesystem::path& dataFolder) {
    std::vector<FolderIdentity> own;
    const auto add = [&own](const std::optional<FolderIdentity>& identity) {
        if (identity) {
            own.push_back(*identity);
        }
    };
    add(identityOf(data.get(), "."));
    const auto names = namesIn({data.get(), dataFolder.string(), Place::Television}, TreeLimits{}.entries);
    for (const std::string& name : names.value_or(std::vector<std::string>())) {
        add(identityOf(data.get(), name.c_str()));
    }
    return own;
}

}  // namespace

bool isOwnFolder(const Tree& parent, const std::string& name, const std::filesystem::path& dataFolder) {
    const Descriptor data(open(dataFolder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!data.valid()) {
        return false;
    }
    const std::vector<FolderIdentity> own = ownFolders(data, dataFolder);
    const std::vector<FolderIdentity> above = lineageOf(parent.descriptor);
    const auto isOwn = [&own](const FolderIdentity& identity) { return holds(own, identity); };
    const auto entry = identityOf(parent.descriptor, name.c_str());
    return std::any_of(above.begin(), above.end(), isOwn) ||
           (entry && (isOwn(*entry) || holds(lineageOf(data.get()), *entry)));
}

}  // namespace vxclone
