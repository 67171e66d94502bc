#pragma once

#include <string>
#include <vector>

#include "virtual_tv/base/error.h"
#include "virtual_tv/television/television.h"

namespace vxtv {

/// A difference between two televisions: a key or a file, and the value in each of them as text.
struct Difference {
    std::string name;
    std::string first;
    std::string second;
};

/// What happens to an area if a television is restored from a clone.
enum class Fate {
    Carried,  ///< it gets the value of the cloned television
    Lost,     ///< it is not cloned, and a restore may remove it
    Kept      ///< it is not changed
};

/// The comparison of one kind of data.
struct AreaComparison {
    /// "settings-keys", a service of data_services.h or its DataService::lostArea, a service with the suffix
    /// "-kept" for data that stays, a name of picture_areas.h, or "apps".
    std::string area;
    std::vector<Difference> differences;
    Fate fate = Fate::Carried;
};

/// The name of the area of settings.
inline constexpr const char* kSettingsArea = "settings-keys";

/// Compares two televisions area by area in a fixed order: first the settings without the status keys, then
/// each service that one of them has, then the files of each picture area, byte by byte, and finally the
/// applications with their data if one of them has any. A link is compared as a link. The identity is not
/// compared.
Result<std::vector<AreaComparison>> compareTelevisions(const Television& first, const Television& second);

}  // namespace vxtv
