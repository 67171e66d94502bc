#include "cloning_app/storage/kept_content.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <limits>
#include <utility>

#include "cloning_app/base/tree_walk.h"

namespace vxclone {

namespace {

/// The complete old content of the clone folder. While this exists, the clone folder's current content has no
/// value.
constexpr const char* kWhole = "Clone.kept";
/// A part of the clone folder's old content. The other part is still, or already, in the clone folder.
constexpr const char* kPart = "Clone.moving";
constexpr mode_t kFolderMode = 0700;
constexpr std::size_t kAnyNumber = std::numeric_limits<std::size_t>::max();

/// The data folder, open.
class Data {
 public:
    static Result<Data> open(const std::filesystem::path& path) {
        auto folder = openOnTelevision(path);
        VX_RETURN_IF_FAILED(folder);
        return Data(std::move(*folder), path.string());
    }

    int descriptor() const { return folder_.get(); }
    Tree tree() const { return {folder_.get(), path_, Place::Television}; }
    std::string pathOf(const char* name) const { return path_ + "/" + name; }

    tl::unexpected<Error> cannotWrite(const char* name) const {
        return tl::make_unexpected(writeError(Place::Television, pathOf(name), errno));
    }
    Result<void> rename(const char* from, const char* to) const {
        return renameat(descriptor(), from, descriptor(), to) == 0 ? Result<void>() : cannotWrite(to);
    }
    Result<Descriptor> openFolder(const char* name) const {
        Descriptor folder(openat(descriptor(), name, kOpenFolder));
        if (!folder.valid()) {
            return tl::make_unexpected(readError(Place::Television, pathOf(name), errno));
        }
        return folder;
    }

 private:
    Data(Descriptor folder, std::string path) : folder_(std::move(folder)), path_(std::move(path)) {}

    Descriptor folder_;
    std::string path_;
};

/// Result: 0, or the system's reason (errno).
int moveEntry(const Tree& from, const Tree& to, const std::string& name) {
    const bool moved = renameat(from.descriptor, name.c_str(), to.descriptor, name.c_str()) == 0;
    return moved ? 0 : errno;
}

bool isInTheWay(int reason) {
    return reason == ENOTEMPTY || reason == EEXIST || reason == ENOTDIR || reason == EISDIR;
}

/// Moves every entry and replaces an entry with the same name.
Result<void> moveAll(const Tree& from, const Tree& to) {
    const auto names = namesIn(from, kAnyNumber);
    VX_RETURN_IF_FAILED(names);
    for (const std::string& name : *names) {
        int reason = moveEntry(from, to, name);
        if (isInTheWay(reason)) {
            reason = removeTree(to.descriptor, name);
            reason = reason == 0 ? moveEntry(from, to, name) : reason;
        }
        if (reason != 0) {
            return tl::make_unexpected(writeError(to.place, to.path + "/" + name, reason));
        }
    }
    return {};
}

Result<void> putPartBack(const Data& data, const Tree& root) {
    const auto part = data.openFolder(kPart);
    VX_RETURN_IF_FAILED(part);
    const auto moved = moveAll({part->get(), data.pathOf(kPart), Place::Television}, root);
    if (!moved) {
        return moved;
    }
    return unlinkat(data.descriptor(), kPart, AT_REMOVEDIR) == 0 ? Result<void>() : data.cannotWrite(kPart);
}

Result<void> setAside(const Data& data, const Tree& root) {
    if (mkdirat(data.descriptor(), kPart, kFolderMode) != 0) {
        return data.cannotWrite(kPart);
    }
    const auto part = data.openFolder(kPart);
    VX_RETURN_IF_FAILED(part);
    const auto moved = moveAll(root, {part->get(), data.pathOf(kPart), Place::Television});
    // Only the complete content gets this name: it allows to empty the clone folder.
    return moved ? data.rename(kPart, kWhole) : moved;
}

Result<bool> putBack(const Data& data, const Tree& root) {
    const auto whole = hasEntry(data.tree(), kWhole);
    if (!whole) {
        return whole;
    }
    if (*whole) {
        VX_RETURN_IF_FAILED(checkContentsRemovable(root));
        if (const int reason = removeContents(root.descriptor); reason != 0) {
            return tl::make_unexpected(writeError(root.place, root.path, reason));
        }
        // From now on the clone folder holds parts of the content again, and must not be emptied after a
        // crash.
        VX_RETURN_IF_FAILED(data.rename(kWhole, kPart));
    }
    const auto part = hasEntry(data.tree(), kPart);
    if (!part || !*part) {
        return part;
    }
    return putPartBack(data, root).map([] { return true; });
}

}  // namespace

Result<void> setContentAside(const std::filesystem::path& dataFolder, const Tree& root) {
    const auto data = Data::open(dataFolder);
    VX_RETURN_IF_FAILED(data);
    VX_RETURN_IF_FAILED(putBack(*data, root));
    auto aside = setAside(*data, root);
    if (!aside) {
        static_cast<void>(putBack(*data, root));
    }
    return aside;
}

Result<bool> putContentBack(const std::filesystem::path& dataFolder, const Tree& root) {
    const auto data = Data::open(dataFolder);
    return data ? putBack(*data, root) : tl::make_unexpected(data.error());
}

Result<bool> isContentAside(const std::filesystem::path& dataFolder) {
    const auto data = Data::open(dataFolder);
    VX_RETURN_IF_FAILED(data);
    const auto whole = hasEntry(data->tree(), kWhole);
    return !whole || *whole ? whole : hasEntry(data->tree(), kPart);
}

TreeSize sizeOfContentAside(const std::filesystem::path& dataFolder) {
    const auto data = Data::open(dataFolder);
    const auto whole = data ? data->openFolder(kWhole) : tl::make_unexpected(data.error());
    return whole ? measureTree({whole->get(), data->pathOf(kWhole), Place::Television}, TreeLimits{})
                       .value_or(TreeSize{})
                 : TreeSize{};
}

}  // namespace vxclone
