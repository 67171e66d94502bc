#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <tl/expected.hpp>
#include <vector>

#include "cloning_app/base/stop_flag.h"
#include "cloning_app/package/identity.h"
#include "cloning_app/package/package_contents.h"

namespace vxclone {

/// What became of a category when the package was made.
struct ManifestResult {
    std::string category;  ///< as on the command line
    std::string result;    ///< as in JSON
    std::string detail = {};
    std::string application = {};  ///< whose result it is, where a category has several
};

/// Something that a whole package of its television would hold, and this one does not.
struct ManifestLack {
    std::string category;   ///< as on the command line
    std::string what = {};  ///< a setting's key, an application or a file; empty: all of the category
    bool declared = false;  ///< the television has no such thing, as whoever made the package said
};

/// Where a package comes from.
struct PackageOrigin {
    std::string name;    ///< for people
    std::string madeAt;  ///< UTC, as in "2026-03-01T12:30:00Z"
    std::string madeBy;  ///< the program and its version
    Identity source;     ///< the television that it was made of
    std::vector<ManifestResult> results = {};
    std::optional<std::vector<ManifestLack>> lacks = {};  ///< none of a package of an earlier vxclone
    /// Of a safety backup: the files that the restore after it puts beside the television's own.
    std::vector<PackageEntry> added = {};
};

/// What a package says of itself. docs/package-format.md defines its form.
struct Manifest {
    PackageOrigin origin;
    std::vector<PackageEntry> entries;  ///< all but the seal and the manifest, sorted by their paths
};

/// The longest name of a package, in bytes: any folder's name is one.
inline constexpr std::size_t kLongestPackageName = 255;

/// The manifest as JSON text: what is authenticated.
std::string manifestBody(const Manifest& manifest);

/// The manifest in such a text, which may come from anybody. Members that it does not know are passed over: a
/// later vxclone may add some. Errors: why it is none, to follow the file's name. Throws
/// vxcommon::ParsingStopped when `stop`, which may be none, was raised meanwhile.
tl::expected<Manifest, std::string> manifestIn(std::string_view body, const StopFlag* stop = nullptr);

}  // namespace vxclone
