#include "cloning_app/package/package_contents.h"

#include <algorithm>
#include <utility>

#include "cloning_app/package/digest.h"
#include "cloning_app/package/layout.h"

namespace vxclone {

class ContentsReading::Reader final : public TreeVisitor {
 public:
    Reader(const Tree& package, Digests digests, const StopFlag* stop)
        : path_(package.path), place_(package.place), digests_(digests), stop_(stop), fileDigests_(stop) {}

    Result<void> file(const TreeEntry& entry, int descriptor) override {
        if (auto going = notStopped(); !going) {
            return going;
        }
        const std::string name = nameOf(entry);
        if (sidecarFolder_ != 0 || isSidecar(entry.name)) {
            return {};
        }
        if (name != kSealFile) {
            contents_.files.push_back(entry.path);
        }
        if (name == kSealFile || name == kManifestFile) {
            contents_.own.push_back({name, false, entry.bytes});
            return {};
        }
        contents_.entries.push_back({name, false, entry.bytes});
        if (digests_ == Digests::OfFiles) {
            fileDigests_.add(descriptor);
        }
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

    void sortFiles() { std::sort(contents_.files.begin(), contents_.files.end()); }
    const std::vector<std::string>& files() const { return contents_.files; }

    Result<PackageContents> finish() {
        VX_RETURN_IF_FAILED(enterDigests());
        std::sort(contents_.entries.begin(), contents_.entries.end(),
                  [](const PackageEntry& one, const PackageEntry& other) { return one.path < other.path; });
        return std::move(contents_);
    }

 private:
    Result<void> notStopped() const {
        return stop_ != nullptr && stop_->raised() ? tl::make_unexpected(stopError(stop_->signal()))
                                                   : Result<void>();
    }

    Result<void> enterDigests() {
        const std::vector<FileDigests::Outcome> outcomes = fileDigests_.finish();
        if (auto going = notStopped(); !going) {
            return going;
        }
        auto outcome = outcomes.begin();
        for (PackageEntry& entry : contents_.entries) {
            if (entry.folder || outcome == outcomes.end()) {
                continue;
            }
            if (outcome->digest.empty()) {
                return tl::make_unexpected(readError(place_, path_ + "/" + entry.path, outcome->reason));
            }
            entry.digest = outcome++->digest;
        }
        return {};
    }

    std::string nameOf(const TreeEntry& entry) const { return entry.path.substr(path_.size() + 1); }

    std::string path_;
    Place place_;
    Digests digests_;
    const StopFlag* stop_;
    std::size_t sidecarFolder_ = 0;  ///< how many folders deep the walk is in one that is passed over
    PackageContents contents_;
    FileDigests fileDigests_;
};

ContentsReading::ContentsReading(std::unique_ptr<Reader> reader) : reader_(std::move(reader)) {}
ContentsReading::ContentsReading(ContentsReading&& other) noexcept = default;
ContentsReading::~ContentsReading() = default;

Result<ContentsReading> ContentsReading::begin(const Tree& package, Digests digests, const StopFlag* stop) {
    auto reader = std::make_unique<Reader>(package, digests, stop);
    if (const auto walked = walkTree(package, TreeLimits{}, *reader); !walked) {
        return tl::make_unexpected(walked.error());
    }
    reader->sortFiles();
    return ContentsReading(std::move(reader));
}

const std::vector<std::string>& ContentsReading::files() const {
    return reader_->files();
}

Result<PackageContents> ContentsReading::finish() {
    return reader_->finish();
}

namespace {

bool sameContent(const PackageEntry& one, const PackageEntry& other) {
    return one.folder == other.folder && one.bytes == other.bytes && one.digest == other.digest;
}

}  // namespace

TreeSize sizeOf(const PackageContents& contents) {
    TreeSize size;
    for (const std::vector<PackageEntry>* const part : {&contents.entries, &contents.own}) {
        for (const PackageEntry& entry : *part) {
            ++size.entries;
            size.files += entry.folder ? 0U : 1U;
            size.bytes += entry.bytes;
        }
    }
    return size;
}

Result<PackageContents> readContents(const Tree& package, Digests digests) {
    return ContentsReading::begin(package, digests, nullptr).and_then([](ContentsReading reading) {
        return reading.finish();
    });
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
