#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "cloning_app/base/tree_copy.h"
#include "cloning_app/check/package_parts.h"
#include "cloning_app/run/television_look.h"

namespace vxclone {

/// A part of a package of which nobody knows whether the television holds the same.
struct NotCompared {
    PackagePart part;
    std::string why;       ///< "the television could not save it"
    bool asAsked = false;  ///< nobody wanted it compared
};

/// What sets a television apart from a package.
struct TelevisionComparison {
    std::vector<Difference> differences;  ///< first: the television, second: the package; named by parts
    std::vector<PackagePart> compared;    ///< the parts of the package that were
    std::vector<NotCompared> notCompared;
    std::vector<std::string> notHeld;  ///< the categories of which the package holds nothing

    /// Whether nothing was left out but what nobody wanted.
    bool complete() const;
};

/// Compares what the package holds with this television: the settings one by one, and the files of the
/// pictures and of the home menu, as they are now, and all else as `look` saved it. Without a look only the
/// former are compared. What the television has of a category that the package does not hold is no
/// difference, nor are settings that the package lacks.
TelevisionComparison compareWithTelevision(const ComparedState& package, const TelevisionLook* look);

/// Lets the library save the television into the clone folder `root`, which is emptied before, for a
/// comparison; during a `Visit`, whose end puts everything back. `needed` is how much room that takes, as far
/// as it is known. Errors: there is no room, a stop, those of `keepRunKeys` and `lookAtTelevision`.
Result<TelevisionLook> lookForComparison(const CloneContext& context, const Tree& root,
                                         const TreeSize& needed);

/// What was not compared: a sentence for each reason.
std::vector<std::string> sentencesOf(const TelevisionComparison& comparison);

/// What became of each part, for programs: a line for each.
std::vector<nlohmann::ordered_json> linesOf(const TelevisionComparison& comparison);

/// The names of the categories that were not compared, or not all of them, each once.
std::vector<std::string> namesNotCompared(const TelevisionComparison& comparison);

}  // namespace vxclone
