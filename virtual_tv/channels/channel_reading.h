#pragma once

#include <cstddef>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <string>

namespace vxtv {

// What the documents of the channels and of the timers have in common. Both throw WrongMember; `where` is the
// path to the value that is looked at.

/// A whole number from `lowest` to `highest`.
std::int64_t numberBetween(const nlohmann::json& value, const std::string& where, std::int64_t lowest,
                           std::int64_t highest);

/// A text for people: from one to `longest` bytes, without control characters.
std::string visibleText(const nlohmann::json& value, const std::string& where, std::size_t longest);

/// An array of at most `most` entries.
void expectShortArray(const nlohmann::json& value, const std::string& where, std::size_t most);

/// The path to an entry of an array, from 1.
std::string entryOf(const std::string& where, std::size_t place);

}  // namespace vxtv
