#include "virtual_tv/television/picture_areas.h"

namespace vxtv {

std::filesystem::path placeOf(const Folder& folder, std::string_view pathInTelevision) {
    return folder.root() / std::filesystem::path(pathInTelevision).lexically_normal().relative_path();
}

}  // namespace vxtv
