#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "cloning_app/base/errors.h"
#include "common/terminal_table.h"

namespace vxclone {

/// The subjects of checks of the whole package, as opposed to single categories.
enum class Subject { Identity, Model, ProductTag, Tuner, Key, PackageKey, Manifest, File, Seal };

enum class Finding {
    Recorded,    ///< written by a backup, and read back
    Sealed,      ///< sealed by a backup, and read back
    Verified,    ///< checked before a restore, and good
    Same,        ///< package and television have the same value
    Unaltered,   ///< the package is what was sealed
    Unlisted,    ///< the package, made by another tool, has no manifest
    Overridden,  ///< differs, but the user accepts it
    Missing,     ///< the package has no such file
    None,        ///< the television has no key
    Altered,     ///< the package is not what was sealed
    Gone,        ///< the manifest lists a file that the package does not hold
    Added,       ///< the package holds a file that the manifest does not list
    Differs,     ///< package and television have different values
    Absent,      ///< the package does not contain the value
    Unknown,     ///< this television does not report the value
    Refused      ///< the library says that it does not fit, and vxclone does not know why
};

/// The result of one such check.
struct Check {
    Subject subject;
    Finding finding;
    std::string television = {};  ///< this television's value, if there is one
    std::string package = {};     ///< the package's value
    std::string detail = {};      ///< further details
};

/// The names of subject and finding in JSON.
std::string_view nameOf(Subject subject);
std::string_view nameOf(Finding finding);

/// The subject in words.
std::string_view wordsOf(Subject subject);

/// The text of the check for people, and its colour.
std::string textOf(const Check& check);
vxcommon::Colour colourOf(const Check& check);

/// The error that the finding means; empty for a good one.
std::optional<ErrorCode> problemOf(const Check& check);

/// The most serious problem, in this order: the package is not complete, there is no key, it was altered, it
/// does not fit. Empty if there is no problem.
std::optional<ErrorCode> problemOf(const std::vector<Check>& checks);

/// A sentence for each kind of problem, the most serious first. `path` is that of the package.
std::vector<std::string> problemSentences(const std::vector<Check>& checks, const std::string& path);

}  // namespace vxclone
