#pragma once

#include <string>
#include <vector>

#include "virtual_tv/television/error.h"
#include "virtual_tv/television/television.h"

namespace vxtv {

/// One thing in which two televisions differ: a key or a file, and what each of them has, as text.
struct Difference {
    std::string name;
    std::string first;
    std::string second;
};

/// What a clone carries of one kind, on two televisions.
struct AreaComparison {
    std::string
        area;  ///< "settings-keys", a service of data_services.h, a name of picture_areas.h, or "apps"
    std::vector<Difference> differences;
};

/// The name of the area of settings.
inline constexpr const char* kSettingsArea = "settings-keys";

/// Compares what a clone carries, area by area, in a fixed order: the settings without the status keys, then
/// each service that one of them has, then the files of each picture area, byte by byte, and the applications
/// with their data when one of them has any; a link is compared as a link. The identity is not judged.
Result<std::vector<AreaComparison>> compareTelevisions(const Television& first, const Television& second);

}  // namespace vxtv
