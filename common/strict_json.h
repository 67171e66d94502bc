#pragma once

#include <cstddef>
#include <functional>
#include <limits>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

namespace vxcommon {

/// Thrown at the first error in a JSON text; caught by the function that began to read.
struct WrongMember {
    std::string member;  ///< the path to it: "settings > volume > int"
    std::string reason;  ///< to follow the member's name: "is missing"
};

/// Thrown if reading a JSON text was asked to stop.
struct ParsingStopped {};

/// Limits for an untrusted JSON text.
struct JsonLimits {
    std::size_t depth = std::numeric_limits<std::size_t>::max();   ///< levels of objects and arrays
    std::size_t values = std::numeric_limits<std::size_t>::max();  ///< values and names together
};

/// Parses the text and also refuses what the parser alone accepts: duplicate members, and more than the
/// limits. The time grows linearly with the text. If `stopped` is given, it is called from time to time.
/// Throws WrongMember for a refused text, nlohmann::json::parse_error for one that is not JSON, and
/// ParsingStopped as soon as `stopped` returns true.
nlohmann::json parseStrictly(std::string_view text, const JsonLimits& limits,
                             const std::function<bool()>& stopped = {});

}  // namespace vxcommon
