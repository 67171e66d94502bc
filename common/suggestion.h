#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace vxcommon {

/// The text with the letters A to Z in lower case.
std::string inSmallLetters(std::string_view text);

/// The number of characters that must be inserted, removed, replaced or swapped with their neighbour to
/// change one text into the other. A character is a byte. Upper and lower case are equal.
std::size_t editDistance(std::string_view first, std::string_view second);

/// The names that the user probably meant by `typed`: the nearest ones, if they are only a few characters
/// away; otherwise those that contain the word. They are in the order of `names`. The result is empty if
/// nothing is near, or if more than three names are equally near.
std::vector<std::string> likelyNames(std::string_view typed, const std::vector<std::string>& names);

/// The same as a question: "did you mean backup?" or "did you mean get or set?". Empty without a likely name.
std::string didYouMean(std::string_view typed, const std::vector<std::string>& names);

}  // namespace vxcommon
