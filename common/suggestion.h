#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace vxcommon {

/// The text with a small letter for each capital from A to Z.
std::string inSmallLetters(std::string_view text);

/// How many characters have to be put in, taken out, replaced or swapped with their neighbour before the one
/// text is the other. A character is a byte; a capital is the same as its small letter.
std::size_t editDistance(std::string_view first, std::string_view second);

/// The names that somebody may have meant who typed `typed`: the nearest ones, if they are but a few
/// characters away, else those that hold the word. In the order of `names`; empty when nothing is near, and
/// when more than three are equally near, which helps nobody.
std::vector<std::string> likelyNames(std::string_view typed, const std::vector<std::string>& names);

/// The same as a question: "did you mean backup?", "did you mean get or set?", or empty.
std::string didYouMean(std::string_view typed, const std::vector<std::string>& names);

}  // namespace vxcommon
