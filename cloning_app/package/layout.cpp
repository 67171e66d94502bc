#include "cloning_app/package/layout.h"

namespace vxclone {

std::string newSiblingOf(std::string_view folderName) {
    return "." + std::string(folderName) + ".vxclone-new";
}

std::string oldSiblingOf(std::string_view folderName) {
    return "." + std::string(folderName) + ".vxclone-old";
}

}  // namespace vxclone
