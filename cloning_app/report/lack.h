#pragma once

#include <string>
#include <vector>

#include "cloning_app/television/category.h"

namespace vxclone {

/// Something that a whole package of a television holds, and this one does not.
struct Lack {
    VXClone category;
    std::string what = {};  ///< a setting's key, an application or a file; empty: all of the category
    bool declared = false;  ///< the television has no such thing, as a person said

    bool operator==(const Lack&) const = default;
};

/// Whether something is lacking that nobody declared.
bool isIncomplete(const std::vector<Lack>& lacks);

/// What is lacking for a sentence: "was, settings-keys (KEY, KEY), apps (NAME)". `declared` says whether of
/// what was declared or of the rest; empty where there is none.
std::string lackingText(const std::vector<Lack>& lacks, bool declared);

/// A sentence about what is lacking and one about what was declared, each where there is such a thing;
/// `subject` is what they tell of: "The package".
std::vector<std::string> lackSentences(const std::vector<Lack>& lacks, const std::string& subject);

}  // namespace vxclone
