#include "tests/documents/quotation.h"

#include <optional>
#include <sstream>
#include <string_view>

namespace vxtest {

namespace {

constexpr std::string_view kAnything = "...";

std::string_view withoutSpacesAtTheEnd(std::string_view line) {
    return line.substr(0, line.find_last_not_of(" \t\r") + 1);
}

bool lineFits(std::string_view quoted, std::string_view printed) {
    const std::size_t first = quoted.find(kAnything);
    if (first == std::string_view::npos) return quoted == printed;
    if (!printed.starts_with(quoted.substr(0, first))) return false;
    printed.remove_prefix(first);
    quoted.remove_prefix(first + kAnything.size());
    for (std::size_t next = 0; (next = quoted.find(kAnything)) != std::string_view::npos;) {
        const std::size_t found = printed.find(quoted.substr(0, next));
        if (found == std::string_view::npos) return false;
        printed.remove_prefix(found + next);
        quoted.remove_prefix(next + kAnything.size());
    }
    return printed.ends_with(quoted);
}

std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) lines.emplace_back(withoutSpacesAtTheEnd(line));
    return lines;
}

}  // namespace

bool quotes(const std::vector<std::string>& quoted, const std::string& printed) {
    const std::vector<std::string> lines = linesOf(printed);
    std::size_t quote = 0;
    std::size_t line = 0;
    // The line after which to try again with one more line for the last `...`, if the rest does not match.
    std::optional<std::size_t> anything;
    std::size_t again = 0;
    while (line < lines.size()) {
        if (quote < quoted.size() && withoutSpacesAtTheEnd(quoted[quote]) == kAnything) {
            anything = quote++;
            again = line;
        } else if (quote < quoted.size() && lineFits(withoutSpacesAtTheEnd(quoted[quote]), lines[line])) {
            ++quote;
            ++line;
        } else if (anything) {
            quote = *anything + 1;
            line = ++again;
        } else {
            return false;
        }
    }
    while (quote < quoted.size() && withoutSpacesAtTheEnd(quoted[quote]) == kAnything) ++quote;
    return quote == quoted.size();
}

bool saysSomething(const std::vector<std::string>& quoted) {
    for (const std::string& line : quoted) {
        if (line.find_first_not_of(". \t") != std::string::npos) return true;
    }
    return false;
}

}  // namespace vxtest
