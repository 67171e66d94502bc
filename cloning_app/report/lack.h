#pragma once

#include <string>
#include <vector>

#include "cloning_app/television/category.h"

namespace vxclone {

/// Something that a complete package of a television would hold, and this one does not.
struct Lack {
    VXClone category;
    std::string what = {};  ///< a setting's key, an application or a file; empty: all of the category
    bool declared = false;  ///< a person declared that the television does not have it

    bool operator==(const Lack&) const = default;
};

/// Whether something is lacking that was not declared.
bool isIncomplete(const std::vector<Lack>& lacks);

/// A list of what is lacking for a sentence: "was, settings-keys (KEY, KEY), apps (NAME)". `declared` selects
/// the declared lacks or the others. Empty if there are none.
std::string lackingText(const std::vector<Lack>& lacks, bool declared);

/// One sentence about what is lacking and one about what was declared, each only if necessary. `subject` is
/// the subject of the sentences: "The package".
std::vector<std::string> lackSentences(const std::vector<Lack>& lacks, const std::string& subject);

}  // namespace vxclone
