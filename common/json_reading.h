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

/// The member of that name; null where there is none, or where `value` is no object.
const nlohmann::json* memberIfThere(const nlohmann::json& value, const std::string& name);

/// The whole number that the value is, if it is one from `lowest` to `highest`.
std::optional<std::int64_t> wholeNumber(const nlohmann::json& value, std::int64_t lowest,
                                        std::int64_t highest);

// All of these throw WrongMember. `where` is the path to the value that is looked at.

/// The path to a member of what lies at `member`.
std::string within(const std::string& member, const std::string& name);
/// The path to an entry of an array, from 1.
std::string entryOf(const std::string& where, std::size_t place);
const nlohmann::json& memberOf(const nlohmann::json& object, const std::string& where,
                               const std::string& name);
void expectObject(const nlohmann::json& value, const std::string& where);
void expectArray(const nlohmann::json& value, const std::string& where);
/// An array of at most `most` entries.
void expectShortArray(const nlohmann::json& value, const std::string& where, std::size_t most);
/// An object without any other member than these.
void expectOnly(const nlohmann::json& object, const std::string& where,
                std::initializer_list<std::string_view> known);
void expectName(const std::string& name, const std::string& where);
int intIn(const nlohmann::json& value, const std::string& where);
/// A whole number from `lowest` to `highest`.
std::int64_t numberBetween(const nlohmann::json& value, const std::string& where, std::int64_t lowest,
                           std::int64_t highest);
bool boolIn(const nlohmann::json& value, const std::string& where);
/// Without a NUL.
std::string stringIn(const nlohmann::json& value, const std::string& where);
/// A text for people: from one to `longest` bytes, without control characters.
std::string visibleText(const nlohmann::json& value, const std::string& where, std::size_t longest);

}  // namespace vxcommon
