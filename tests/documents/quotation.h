#pragma once

#include <string>
#include <vector>

namespace vxtest {

/// Whether the quotation matches the printed text. In a quoted line, `...` matches any text. A quoted line
/// that consists of `...` matches any number of lines, including none. Spaces at the end of a line do not
/// count.
bool quotes(const std::vector<std::string>& quoted, const std::string& printed);

/// Whether the quotation checks anything: `...` and empty lines alone would match every output.
bool saysSomething(const std::vector<std::string>& quoted);

}  // namespace vxtest
