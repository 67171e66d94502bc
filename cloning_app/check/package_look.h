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

/// A package on the stick that is opened only for reading. Nothing of it is changed or repaired.
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

/// What a package says about itself, and what is known without reading its files.
struct PackageLook {
    std::optional<Identity> identity;
    std::optional<ReadManifest> manifest;
    std::vector<Check> checks;     ///< whether it fits, its manifest is good and its seal exists
    std::vector<Lack> lacks = {};  ///< what it lacks
};

/// Reads this from the package. A damaged file of it becomes a check of the result. Errors: it cannot be
/// read, or has a later format.
Result<PackageLook> lookAt(const Tree& package);

/// The exit status for these checks: that of the most serious one. A missing key and another kind of
/// television do not count, because this command needs neither.
int statusOfLook(const PackageLook& look);

/// The package's description as members of a JSON line.
nlohmann::ordered_json factsOf(const std::string& path, const PackageLook& look);

/// The time for a list, "2026-03-01 12:30 UTC", in words between which a narrow column can be broken. Any
/// other text is unchanged.
std::string dayAndMinute(const std::string& time);

/// The value for people; a dash if there is none.
std::string orDash(const std::optional<std::string>& value);

}  // namespace vxclone
