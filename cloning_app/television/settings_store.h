#pragma once

#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

#include "cloning_app/package/settings_file.h"

namespace vxclone {

/// The television's settings store. A reading is none when the store refuses it. Any thread.
namespace store {

std::optional<int> readInt(const std::string& key);
std::optional<bool> readBool(const std::string& key);
std::optional<std::string> readString(const std::string& key);
/// Result: whether the store took the value.
bool writeInt(const std::string& key, int value);
bool writeBool(const std::string& key, bool value);
bool writeString(const std::string& key, const std::string& value);

}  // namespace store

/// The keys through which the library tells how a run goes.
inline constexpr const char* kProgressKey = "db/hotel/clone_progress";
inline constexpr const char* kResultKey = "db/hotel/clone_result";

/// The keys of those settings that the television does not hold as the package says.
std::vector<std::string> settingsNotApplied(const std::vector<Setting>& settings);

/// The setting's value for people: a number, true or false, or the text in quotation marks. Of a secret it
/// says only whether it is set; of a damaged value, that it is damaged.
std::string shownValue(const Setting& setting);

/// The same for programs: a number, true or false, or the text; of a secret "(set)" or "(not set)"; null for
/// a damaged value.
nlohmann::ordered_json jsonValue(const Setting& setting);

/// Whether two settings of one key have the same value.
bool sameValue(const Setting& one, const Setting& other);

/// What the television holds under the keys of these settings, each read as the type that it has there. A key
/// that the store refuses has a damaged value.
std::vector<Setting> settingsOfTelevision(const std::vector<Setting>& settings);

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
