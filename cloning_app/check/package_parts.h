#pragma once

#include <compare>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "cloning_app/report/comparison.h"

namespace vxclone {

/// The part of a package that one service or application saves and loads.
struct PackagePart {
    std::string category;  ///< as on the command line; "identity" or "other" for what belongs to none
    /// For the category "apps" the application; for "other" the entry's name; otherwise empty.
    std::string subject = {};

    auto operator<=>(const PackagePart&) const = default;
    bool isOfApplication() const;
};

/// The part for people: "channels", "apps (org.example.app)" or the name of an entry that belongs to no
/// category; all of those together are "files of the television's services".
std::string nameOf(const PackagePart& part);

/// The part to which a file of a package belongs, by its path. A folder at the top that does not belong to a
/// category belongs to an application.
PackagePart partOf(std::string_view path);

/// The state, divided into parts. Empty parts are left out.
std::map<PackagePart, ComparedState> partsOf(const ComparedState& state);

/// Stores in each difference the part to which it belongs, and groups them by part.
void nameParts(std::vector<Difference>& differences);

/// Whether the difference belongs to this part. Before: `nameParts` was called.
bool belongsTo(const Difference& difference, const PackagePart& part);

}  // namespace vxclone
