#pragma once

#include <cstddef>
#include <string_view>

namespace vxcommon {

/// One character of a text in UTF-8.
struct Character {
    std::size_t bytes = 0;
    std::size_t columns = 0;  ///< its columns on a terminal: 0, 1 or 2
    bool valid = false;  ///< false for a byte that is not UTF-8, which counts as a character of one column
    char32_t value = 0;  ///< its code point, if it is valid
};

/// The character that begins at byte `at`. Before: `at` is less than the size of the text.
Character characterAt(std::string_view text, std::size_t at);

}  // namespace vxcommon
