#pragma once

#include <compare>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "cloning_app/report/comparison.h"

namespace vxclone {

/// What of a package one service or application saves and loads.
struct PackagePart {
    std::string category;  ///< as on the command line; "identity" or "other" for what belongs to none
    /// Whose data it is, of the category "apps"; the entry's name, of "other"; else empty.
    std::string subject = {};

    auto operator<=>(const PackagePart&) const = default;
    bool isOfApplication() const;
};

/// The part for people: "channels", "apps (org.example.app)" or the entry's name.
std::string nameOf(const PackagePart& part);

/// The part that a file of a package belongs to, by its path. Every folder at the top that is no category's
/// is an application's.
PackagePart partOf(std::string_view path);

/// The state, part by part. A part without anything in it is not there.
std::map<PackagePart, ComparedState> partsOf(const ComparedState& state);

/// Says of each difference which part it belongs to, and groups them by that.
void nameParts(std::vector<Difference>& differences);

/// Whether the difference, named by `nameParts`, is one of this part.
bool belongsTo(const Difference& difference, const PackagePart& part);

}  // namespace vxclone
