#pragma once

#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

#include "cloning_app/package/settings_file.h"

namespace vxclone {

/// The setting's value for people: a number, true or false, or the text in quotation marks. Of a secret it
/// says only whether it is set; of a value that is none, that it is damaged.
std::string shownValue(const Setting& setting);

/// The same for programs: a number, true or false, or the text; of a secret "(set)" or "(not set)"; null for
/// a value that is none.
nlohmann::ordered_json jsonValue(const Setting& setting);

/// Whether two settings of one key have the same value.
bool sameValue(const Setting& one, const Setting& other);

/// What the television holds under the keys of these settings, each read as the type that it has there; what
/// the store refuses is a value that is none.
std::vector<Setting> settingsOfTelevision(const std::vector<Setting>& settings);

}  // namespace vxclone
