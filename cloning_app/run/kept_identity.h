#pragma once

#include <string>
#include <vector>

#include "cloning_app/package/settings_file.h"

namespace vxclone {

/// The settings that belong to this television alone, identity and secrets, with their values and types as
/// they are now. What the store refuses is not among them.
std::vector<Setting> identityOfTelevision();

/// Writes them back. Result: the keys that the store refused or does not hold as they were.
std::vector<std::string> writeBack(const std::vector<Setting>& settings);

/// The settings without those of `kept`.
std::vector<Setting> withoutKept(std::vector<Setting> settings, const std::vector<Setting>& kept);

}  // namespace vxclone
