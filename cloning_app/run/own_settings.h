#pragma once

#include <string>
#include <vector>

#include "cloning_app/package/settings_file.h"

namespace vxclone {

/// Settings of this television that a restore is to leave as they are.
struct OwnSettings {
    std::vector<Setting> values;          ///< as the television holds them
    std::vector<std::string> unreadable;  ///< the keys that the store refused twice
};

/// What the television holds under these keys of settings that travel.
OwnSettings ownSettings(const std::vector<std::string>& keys);

/// The keys of the settings that belong to one television alone: identity and secrets.
std::vector<std::string> identityKeys();

/// The values of these, without what the store refuses.
std::vector<Setting> identityOfTelevision();

/// Writes them back. Result: the keys that the store refused or does not hold as they were.
std::vector<std::string> writeBack(const std::vector<Setting>& settings);

/// The settings without those of `kept`.
std::vector<Setting> withoutKept(std::vector<Setting> settings, const std::vector<Setting>& kept);

}  // namespace vxclone
