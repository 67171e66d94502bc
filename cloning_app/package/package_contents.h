#pragma once

#include <memory>
#include <string>
#include <vector>

#include "cloning_app/base/stop_flag.h"
#include "cloning_app/base/tree_copy.h"
#include "cloning_app/base/tree_walk.h"

namespace vxclone {

/// A file or a folder of a package.
struct PackageEntry {
    std::string path;  ///< in the package: "logo/boot.png"
    bool folder = false;
    std::uint64_t bytes = 0;
    std::string digest = {};  ///< SHA-256 of a file, in hexadecimal digits; empty where nobody asked
};

/// What a package holds, without the sidecar files of a stick. Both sides of the seal must see the same, so
/// both get it from here.
struct PackageContents {
    std::vector<std::string> files;      ///< the full paths of all files but the seal, sorted
    std::vector<PackageEntry> entries;   ///< all but the seal and the manifest, sorted by their paths
    std::vector<PackageEntry> own = {};  ///< the seal and the manifest, without digests
};

/// How large the package is, as it is told to people: with all its files, the seal and the manifest, too.
TreeSize sizeOf(const PackageContents& contents);

enum class Digests { None, OfFiles };

/// Reads the package. Errors: those of `walkTree`.
Result<PackageContents> readContents(const Tree& package, Digests digests = Digests::OfFiles);

/// A package of which is known what it holds, while its files are still being digested on other threads.
class ContentsReading {
 public:
    /// Errors: those of `walkTree`, or a stop, when `stop` is raised meanwhile. The flag must outlive the
    /// reading.
    static Result<ContentsReading> begin(const Tree& package, Digests digests, const StopFlag* stop);

    ContentsReading(ContentsReading&& other) noexcept;
    ContentsReading& operator=(ContentsReading&&) = delete;
    ContentsReading(const ContentsReading&) = delete;
    ContentsReading& operator=(const ContentsReading&) = delete;
    ~ContentsReading();

    /// The full paths of all files but the seal, sorted.
    const std::vector<std::string>& files() const;

    /// Waits for the digests. Errors: a file that cannot be read, or a stop. The last call.
    Result<PackageContents> finish();

 private:
    class Reader;
    explicit ContentsReading(std::unique_ptr<Reader> reader);

    std::unique_ptr<Reader> reader_;
};

/// How an entry is not as it should be.
struct EntryDifference {
    enum class Kind { Missing, Added, Altered };
    std::string path;
    Kind kind;
};

/// What sets the entries apart from those that should be there, sorted by paths. Both must be sorted.
std::vector<EntryDifference> differencesOf(const std::vector<PackageEntry>& wanted,
                                           const std::vector<PackageEntry>& found);

}  // namespace vxclone
