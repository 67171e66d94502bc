#pragma once

#include <array>
#include <filesystem>
#include <string_view>

#include "virtual_tv/television/folder.h"

namespace vxtv {

/// A directory of pictures in the television.
struct PictureArea {
    std::string_view name;  ///< in profiles and comparisons
    std::string_view path;  ///< as programs in the television see it, without a trailing slash
};

inline constexpr PictureArea kBootLogoArea = {"boot-logo", "/opt/usr/data/hotel/bootlogo"};
inline constexpr PictureArea kHomeMenuArea = {"home-menu", "/opt/usr/data/hotel/homemenu"};
inline constexpr PictureArea kMbrLogoArea = {"mbr-logo", "/opt/usr/data/hotel/mbrlogo"};
inline constexpr std::array kPictureAreas = {kBootLogoArea, kHomeMenuArea, kMbrLogoArea};

/// The data directory of the cloning application; the clone directory itself is the application's to make.
inline constexpr std::string_view kCloningDataPath = "/opt/usr/apps/org.vorta.vxhotel-cloning/data";

/// Where an absolute path, as seen in the television, lies in its folder.
std::filesystem::path placeOf(const Folder& folder, std::string_view pathInTelevision);

}  // namespace vxtv
