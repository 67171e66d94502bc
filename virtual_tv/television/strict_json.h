#pragma once

#include <nlohmann/json.hpp>
#include <string_view>

namespace vxtv {

/// Parses the text and refuses what the parser alone would let pass: a member that is given twice, and
/// objects and arrays in more than `deepest` layers. Throws WrongMember for these,
/// nlohmann::json::parse_error for what is no JSON.
nlohmann::json parseStrictly(std::string_view text, int deepest);

}  // namespace vxtv
