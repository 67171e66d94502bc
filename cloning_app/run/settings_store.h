#pragma once

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

}  // namespace vxclone
