#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <string_view>

#include "common/strict_json.h"

namespace vxcommon {

/// The member with that name; null if it does not exist or if `value` is not an object.
const nlohmann::json* memberIfThere(const nlohmann::json& value, const std::string& name);

/// The value as an integer, if it is one from `lowest` to `highest`.
std::optional<std::int64_t> wholeNumber(const nlohmann::json& value, std::int64_t lowest,
                                        std::int64_t highest);

// The functions below throw WrongMember. `where` is the path of the checked value.

/// The path of the member `name` in the value with the path `member`.
std::string within(const std::string& member, const std::string& name);
/// The path of an array entry; the first one is 1.
std::string entryOf(const std::string& where, std::size_t place);
const nlohmann::json& memberOf(const nlohmann::json& object, const std::string& where,
                               const std::string& name);
void expectObject(const nlohmann::json& value, const std::string& where);
void expectArray(const nlohmann::json& value, const std::string& where);
/// Requires an array of at most `most` entries.
void expectShortArray(const nlohmann::json& value, const std::string& where, std::size_t most);
/// Requires an object without members other than these.
void expectOnly(const nlohmann::json& object, const std::string& where,
                std::initializer_list<std::string_view> known);
void expectName(const std::string& name, const std::string& where);
int intIn(const nlohmann::json& value, const std::string& where);
/// Requires an integer from `lowest` to `highest`.
std::int64_t numberBetween(const nlohmann::json& value, const std::string& where, std::int64_t lowest,
                           std::int64_t highest);
bool boolIn(const nlohmann::json& value, const std::string& where);
/// Requires a string without a NUL.
std::string stringIn(const nlohmann::json& value, const std::string& where);
/// Requires a text for people: one to `longest` bytes without control characters.
std::string visibleText(const nlohmann::json& value, const std::string& where, std::size_t longest);

}  // namespace vxcommon
