#pragma once

#include <filesystem>

#include "virtual_tv/television/picture_areas.h"

namespace vxtv {

/// Where the cloning application keeps the package that it makes or unpacks, for services that are not told.
/// The application makes it.
inline std::filesystem::path cloneDirectory(const Folder& folder) {
    return placeOf(folder, kCloningDataPath) / "Clone";
}

}  // namespace vxtv
