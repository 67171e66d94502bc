#pragma once

#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

#include "cloning_app/check/completeness.h"
#include "cloning_app/package/identity.h"
#include "cloning_app/package/manifest_file.h"
#include "cloning_app/report/finding.h"
#include "cloning_app/storage/stick_target.h"

namespace vxclone {

/// A package where it lies, opened for looking alone: nothing of it is changed, and nothing put right.
class OpenPackage {
 public:
    /// Errors: those of `StickTarget::open` and `StickTarget::openPackage`.
    static Result<OpenPackage> open(const std::filesystem::path& folder);

    Tree tree() const { return {folder_.get(), path_, Place::Stick}; }

 private:
    OpenPackage(Descriptor folder, std::string path) : folder_(std::move(folder)), path_(std::move(path)) {}

    Descriptor folder_;
    std::string path_;
};

/// What a package says of itself, and what can be said of it without reading its files.
struct PackageLook {
    std::optional<Identity> identity;
    std::optional<ReadManifest> manifest;
    std::vector<Check> checks;     ///< whether it fits, its manifest is good and its seal there
    std::vector<Lack> lacks = {};  ///< what it lacks
};

/// Looks at the package. A file of it that is damaged is a check of the result. Errors: it cannot be read, or
/// is of a later format.
Result<PackageLook> lookAt(const Tree& package);

/// The exit status for what was seen: that of the gravest check, where neither a missing key nor another kind
/// of television counts, since a look needs none of them.
int statusOfLook(const PackageLook& look);

/// What a package says of itself, as members of a JSON line.
nlohmann::ordered_json factsOf(const std::string& path, const PackageLook& look);

/// The time as a list shows it, "2026-03-01 12:30 UTC", in words that a narrow column can be broken between;
/// any other text as it is.
std::string dayAndMinute(const std::string& time);

/// The value for people; a dash where there is none.
std::string orDash(const std::optional<std::string>& value);

}  // namespace vxclone
