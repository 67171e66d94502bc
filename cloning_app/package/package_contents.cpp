#include "cloning_app/package/package_contents.h"

#include <algorithm>
#include <cerrno>
#include <utility>

#include "cloning_app/package/digest.h"
#include "cloning_app/package/layout.h"

namespace vxclone {

namespace {

class Reader final : public TreeVisitor {
 public:
    Reader(const Tree& package, Digests digests) : package_(package), digests_(digests) {}

    Result<void> file(const TreeEntry& entry, int descriptor) override {
        const std::string name = nameOf(entry);
        if (sidecarFolder_ != 0 || isSidecar(entry.name) || name == kSealFile) {
            return {};
        }
        contents_.files.push_back(entry.path);
        if (name == kManifestFile) {
            return {};
        }
        std::string digest = digests_ == Digests::OfFiles ? digestOfFile(descriptor) : std::string();
        if (digests_ == Digests::OfFiles && digest.empty()) {
            return tl::make_unexpected(readError(package_.place, entry.path, errno));
        }
        contents_.entries.push_back({name, false, entry.bytes, std::move(digest)});
        return {};
    }

    Result<void> enterFolder(const TreeEntry& entry) override {
        if (sidecarFolder_ != 0 || isSidecar(entry.name)) {
            ++sidecarFolder_;
        } else {
            contents_.entries.push_back({nameOf(entry), true});
        }
        return {};
    }

    Result<void> leaveFolder() override {
        sidecarFolder_ -= sidecarFolder_ == 0 ? 0 : 1;
        return {};
    }

    PackageContents contents() && {
        std::sort(contents_.files.begin(), contents_.files.end());
        std::sort(contents_.entries.begin(), contents_.entries.end(),
                  [](const PackageEntry& one, const PackageEntry& other) { return one.path < other.path; });
        return std::move(contents_);
    }

 private:
    std::string nameOf(const TreeEntry& entry) const { return entry.path.substr(package_.path.size() + 1); }

    const Tree& package_;
    Digests digests_;
    std::size_t sidecarFolder_ = 0;  ///< how many folders deep the walk is in one that is passed over
    PackageContents contents_;
};

bool sameContent(const PackageEntry& one, const PackageEntry& other) {
    return one.folder == other.folder && one.bytes == other.bytes && one.digest == other.digest;
}

}  // namespace

Result<PackageContents> readContents(const Tree& package, Digests digests) {
    Reader reader(package, digests);
    if (const auto walked = walkTree(package, TreeLimits{}, reader); !walked) {
        return tl::make_unexpected(walked.error());
    }
    return std::move(reader).contents();
}

std::vector<EntryDifference> differencesOf(const std::vector<PackageEntry>& wanted,
                                           const std::vector<PackageEntry>& found) {
    using Kind = EntryDifference::Kind;
    std::vector<EntryDifference> differences;
    auto mine = wanted.begin();
    auto theirs = found.begin();
    while (mine != wanted.end() || theirs != found.end()) {
        if (theirs == found.end() || (mine != wanted.end() && mine->path < theirs->path)) {
            differences.push_back({mine++->path, Kind::Missing});
        } else if (mine == wanted.end() || theirs->path < mine->path) {
            differences.push_back({theirs++->path, Kind::Added});
        } else {
            if (!sameContent(*mine, *theirs)) {
                differences.push_back({mine->path, Kind::Altered});
            }
            ++mine;
            ++theirs;
        }
    }
    return differences;
}

}  // namespace vxclone
