#pragma once

#include <cstddef>
#include <string_view>

namespace vxcommon {

/// One character of a text in UTF-8.
struct Character {
    std::size_t bytes = 0;
    std::size_t columns = 0;  ///< that it takes on a terminal: 0, 1 or 2
    bool valid = false;  ///< false for a byte that is no UTF-8, which counts as a character of one column
    char32_t value = 0;  ///< its code point, where it is valid
};

/// The character that begins at the byte `at`, which must be one of the text's.
Character characterAt(std::string_view text, std::size_t at);

}  // namespace vxcommon
