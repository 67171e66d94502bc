#pragma once

#include <string>
#include <vector>

namespace vxtest {

/// Whether what a document quotes is what was printed. In a quoted line, `...` stands for any text; a quoted
/// line that is `...` alone stands for any lines, also for none. Spaces at the end of a line do not count.
bool quotes(const std::vector<std::string>& quoted, const std::string& printed);

/// Whether the quotation says anything: one of `...` and empty lines alone fits whatever is printed.
bool saysSomething(const std::vector<std::string>& quoted);

}  // namespace vxtest
