#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "cloning_app/base/errors.h"
#include "common/terminal_table.h"

namespace vxclone {

/// What of a package is judged as a whole, not category by category.
enum class Subject { Identity, Model, ProductTag, Tuner, Key, PackageKey, Manifest, File, Seal };

enum class Finding {
    Recorded,    ///< written down by a backup, and read back
    Sealed,      ///< sealed by a backup, and read back
    Verified,    ///< looked at before a restore, and good
    Same,        ///< the package's is this television's
    Unaltered,   ///< the package is what was sealed
    Unlisted,    ///< the package, made by another tool, has no manifest
    Overridden,  ///< differs, and the user wants it all the same
    Missing,     ///< the package holds no such file
    None,        ///< the television has none
    Altered,     ///< the package is not what was sealed
    Gone,        ///< the manifest lists a file that the package does not hold
    Added,       ///< the package holds a file that the manifest does not list
    Differs,     ///< the package's is not this television's
    Absent,      ///< the package does not tell its own
    Unknown,     ///< this television does not tell its own
    Refused      ///< the library says that it does not fit, for no reason that vxclone sees
};

/// One such judgement.
struct Check {
    Subject subject;
    Finding finding;
    std::string television = {};  ///< this television's value, where there is one
    std::string package = {};     ///< the package's value
    std::string detail = {};      ///< what else there is to say
};

/// The subject and the finding in JSON.
std::string_view nameOf(Subject subject);
std::string_view nameOf(Finding finding);

/// The subject for people.
std::string_view wordsOf(Subject subject);

/// What the check says, for people, and its colour.
std::string textOf(const Check& check);
vxcommon::Colour colourOf(const Check& check);

/// The error that the finding stands for; none for a good one.
std::optional<ErrorCode> problemOf(const Check& check);

/// The gravest problem: the package is not complete, there is no key, it was altered, it does not fit, in
/// this order. None when all is well.
std::optional<ErrorCode> problemOf(const std::vector<Check>& checks);

/// A sentence for each kind of problem, the gravest first; `path` is the package's.
std::vector<std::string> problemSentences(const std::vector<Check>& checks, const std::string& path);

}  // namespace vxclone
