#pragma once

#include <string>
#include <string_view>

namespace vxcommon {

/// Whether a reader does not see the character for what it is: it steers a terminal, ends a line, turns the
/// direction of writing, or takes no place at all.
bool isDeceptive(char32_t character);

/// Text for a terminal or a line of a log, whoever wrote it: deceptive characters and bytes that are no UTF-8
/// are written as \xNN, a byte each. A second pass changes nothing.
std::string printable(std::string_view text);

/// JSON text that shows what it holds: deceptive characters are written as \uNNNN, which means the same. The
/// text must be JSON in UTF-8 of one line, or with line feeds between its values.
std::string printableJson(std::string_view json);

}  // namespace vxcommon
