#pragma once

#include <string>
#include <vector>

#include "virtual_tv/base/error.h"
#include "virtual_tv/television/television.h"

namespace vxtv {

/// One thing in which two televisions differ: a key or a file, and what each of them has, as text.
struct Difference {
    std::string name;
    std::string first;
    std::string second;
};

/// What becomes of an area when a television takes over a clone.
enum class Fate {
    Carried,  ///< it becomes what the clone's television had
    Lost,     ///< no clone carries it, and a restore may take it away
    Kept      ///< it stays
};

/// What two televisions have of one kind.
struct AreaComparison {
    /// "settings-keys", a service of data_services.h or its DataService::lostArea, a service with "-kept"
    /// behind it for what it keeps, a name of picture_areas.h, or "apps".
    std::string area;
    std::vector<Difference> differences;
    Fate fate = Fate::Carried;
};

/// The name of the area of settings.
inline constexpr const char* kSettingsArea = "settings-keys";

/// Compares them area by area, in a fixed order: the settings without the status keys, then each service that
/// one of them has, then the files of each picture area, byte by byte, and the applications with their data
/// when one of them has any; a link is compared as a link. The identity is not compared.
Result<std::vector<AreaComparison>> compareTelevisions(const Television& first, const Television& second);

}  // namespace vxtv
