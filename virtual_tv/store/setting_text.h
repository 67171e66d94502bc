#pragma once

#include <string>

#include "virtual_tv/store/settings_store.h"

namespace vxtv {

/// The value as a person types it: a number, "true" or "false", or the string itself.
std::string plainText(const SettingValue& value);

/// The same, but a string is in quotation marks, so that an empty one is visible.
std::string quotedText(const SettingValue& value);

/// The value of the given type from a text: a decimal integer that fits an int; 0, 1, true, false, on or off;
/// any string. Errors: OutOfRange, with the key in the sentence.
Result<SettingValue> parseValue(const std::string& key, SettingType type, const std::string& text);

}  // namespace vxtv
