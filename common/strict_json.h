#pragma once

#include <cstddef>
#include <limits>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

namespace vxcommon {

/// Leaves the reading of a JSON text at the first thing that is wrong; caught where the reading began.
struct WrongMember {
    std::string member;  ///< the path to it: "settings > volume > int"
    std::string reason;  ///< goes on from the member's name: "is missing"
};

/// What a JSON text of somebody else's may have at most.
struct JsonLimits {
    int depth = std::numeric_limits<int>::max();                   ///< layers of objects and arrays
    std::size_t values = std::numeric_limits<std::size_t>::max();  ///< values and names together
};

/// Parses the text and refuses what the parser alone would let pass: a member that is given twice, and more
/// than the limits. Throws WrongMember for these, nlohmann::json::parse_error for what is no JSON.
nlohmann::json parseStrictly(std::string_view text, const JsonLimits& limits);

}  // namespace vxcommon
