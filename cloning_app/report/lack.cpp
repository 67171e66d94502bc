#include "cloning_app/report/lack.h"

#include <algorithm>

#include "common/printable.h"

namespace vxclone {

using vxcommon::printable;

bool isIncomplete(const std::vector<Lack>& lacks) {
    return std::any_of(lacks.begin(), lacks.end(), [](const Lack& lack) { return !lack.declared; });
}

std::string lackingText(const std::vector<Lack>& lacks, bool declared) {
    std::string text;
    for (const Category& category : categories()) {
        std::string parts;
        bool found = false;
        for (const Lack& lack : lacks) {
            if (lack.category == category.value && lack.declared == declared) {
                found = true;
                parts += (parts.empty() || lack.what.empty() ? "" : ", ") + printable(lack.what).text();
            }
        }
        if (found) {
            text += (text.empty() ? "" : ", ") + std::string(category.name) +
                    (parts.empty() ? "" : " (" + parts + ")");
        }
    }
    return text;
}

std::vector<std::string> lackSentences(const std::vector<Lack>& lacks, const std::string& subject) {
    std::vector<std::string> sentences;
    if (const std::string lacking = lackingText(lacks, false); !lacking.empty()) {
        sentences.push_back(subject + " is not complete. It lacks: " + lacking + ".");
    }
    if (const std::string declared = lackingText(lacks, true); !declared.empty()) {
        sentences.push_back(subject + " holds none of these, as was declared: " + declared + ".");
    }
    return sentences;
}

}  // namespace vxclone
