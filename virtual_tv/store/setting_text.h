#pragma once

#include <string>

#include "virtual_tv/store/settings_store.h"

namespace vxtv {

/// The value as a person types it: a number, "true" or "false", or the string itself.
std::string plainText(const SettingValue& value);

/// The same, with a string between quotation marks, so that an empty one can be seen.
std::string quotedText(const SettingValue& value);

/// The value of the type that the text stands for: a whole decimal number that fits an int; 0, 1, true,
/// false, on or off; any string. Errors: OutOfRange, whose sentence names the key.
Result<SettingValue> parseValue(const std::string& key, SettingType type, const std::string& text);

}  // namespace vxtv
