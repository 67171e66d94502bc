#pragma once

#include <nlohmann/json.hpp>
#include <string>

#include "cloning_app/run/package_look.h"

namespace vxclone {

/// What a package says of itself, as members of a JSON line.
nlohmann::ordered_json factsOf(const std::string& path, const PackageLook& look);

/// The time as a list shows it, "2026-03-01 12:30 UTC", in words that a narrow column can be broken between;
/// any other text as it is.
std::string dayAndMinute(const std::string& time);

/// The value for people; a dash where there is none.
std::string orDash(const std::optional<std::string>& value);

}  // namespace vxclone
