#include "cloning_app/package/layout.h"

#include <algorithm>

namespace vxclone {

bool isKnownEntry(std::string_view name) {
    return std::find(kKnownEntries.begin(), kKnownEntries.end(), name) != kKnownEntries.end();
}

std::string newSiblingOf(std::string_view folderName) {
    return "." + std::string(folderName) + ".vxclone-new";
}

std::string oldSiblingOf(std::string_view folderName) {
    return "." + std::string(folderName) + ".vxclone-old";
}

}  // namespace vxclone
