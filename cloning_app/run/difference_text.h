#pragma once

#include <nlohmann/json.hpp>
#include <string>

#include "cloning_app/run/comparison.h"

namespace vxclone {

/// What is different, to follow the name of the setting or of the file; `first` and `second` name the two
/// states. Of a secret only that it differs.
std::string wordsOf(const Difference& difference, const std::string& first, const std::string& second);

/// The members of a JSON line.
nlohmann::ordered_json jsonOf(const Difference& difference);

}  // namespace vxclone
