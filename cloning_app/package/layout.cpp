#include "cloning_app/package/layout.h"

#include <algorithm>

namespace vxclone {

namespace {

constexpr std::array<std::string_view, 4> kSidecars = {".DS_Store", "Thumbs.db", "desktop.ini",
                                                       "System Volume Information"};
constexpr std::string_view kSidecarPrefix = "._";

}  // namespace

bool isKnownEntry(std::string_view name) {
    return std::find(kKnownEntries.begin(), kKnownEntries.end(), name) != kKnownEntries.end();
}

bool isSidecar(std::string_view name) {
    return name.substr(0, kSidecarPrefix.size()) == kSidecarPrefix ||
           std::find(kSidecars.begin(), kSidecars.end(), name) != kSidecars.end();
}

std::string newSiblingOf(std::string_view folderName) {
    return "." + std::string(folderName) + ".vxclone-new";
}

std::string oldSiblingOf(std::string_view folderName) {
    return "." + std::string(folderName) + ".vxclone-old";
}

}  // namespace vxclone
