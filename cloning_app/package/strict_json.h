#pragma once

#include <cstddef>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <tl/expected.hpp>

namespace vxclone {

/// What a JSON text of somebody else's may have at most.
struct JsonLimits {
    int depth;           ///< layers of objects and arrays
    std::size_t values;  ///< values and names together
};

/// Parses the text and refuses what the parser alone would let pass: a name that an object has twice, and
/// more than the limits. Errors: why not, to follow the text's name: "is no JSON".
tl::expected<nlohmann::json, std::string> parseStrictly(std::string_view text, const JsonLimits& limits);

}  // namespace vxclone
