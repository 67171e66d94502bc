#pragma once

#include <cstddef>
#include <functional>
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

/// Leaves the reading of a JSON text when somebody wants it to stop.
struct ParsingStopped {};

/// What a JSON text of somebody else's may have at most.
struct JsonLimits {
    std::size_t depth = std::numeric_limits<std::size_t>::max();   ///< layers of objects and arrays
    std::size_t values = std::numeric_limits<std::size_t>::max();  ///< values and names together
};

/// Parses the text and refuses what the parser alone would let pass: a member that is given twice, and more
/// than the limits. The time grows as the text does. `stopped`, where it is given, is asked now and then.
/// Throws WrongMember for what is refused, nlohmann::json::parse_error for what is no JSON, and
/// ParsingStopped as soon as `stopped` says so.
nlohmann::json parseStrictly(std::string_view text, const JsonLimits& limits,
                             const std::function<bool()>& stopped = {});

}  // namespace vxcommon
