#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace vxclone {

/// Any bytes as UTF-8 text without control characters: these, bytes that are no UTF-8, and the backslash are
/// written as \xNN, with two lower-case hexadecimal digits for each byte.
std::string escaped(std::string_view bytes);

/// The bytes that such a text stands for; none where `escaped` would not have written it so.
std::optional<std::string> unescaped(std::string_view text);

}  // namespace vxclone
