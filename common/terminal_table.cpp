#include "common/terminal_table.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <iterator>
#include <limits>
#include <numeric>
#include <utility>

#include "common/character_width.h"

namespace vxcommon {

namespace {

constexpr std::array<PrintableView, 5> kColourCodes = {"", "\x1b[32m", "\x1b[31m", "\x1b[33m", "\x1b[2m"};
static_assert(kColourCodes.size() == static_cast<std::size_t>(Colour::Dim) + 1);
constexpr PrintableView kColourEnd = "\x1b[0m";
constexpr std::size_t kColumnGap = 2;

std::size_t longestWord(std::string_view text) {
    std::size_t longest = 0;
    for (std::size_t at = 0; at <= text.size();) {
        const std::size_t end = std::min(text.find(' ', at), text.size());
        longest = std::max(longest, displayWidth(text.substr(at, end - at)));
        at = end + 1;
    }
    return longest;
}

/// The number of bytes of the text that go into its first line. `line` is the longest beginning that fits the
/// columns.
std::size_t lineEnd(std::string_view text, std::string_view line, std::size_t columns) {
    const std::size_t blank = text.substr(0, line.size() + 1).rfind(' ');
    const std::size_t wordBegin = blank == std::string_view::npos ? 0 : blank + 1;
    if (wordBegin > line.size()) {
        return line.size();
    }
    const std::string_view from = text.substr(wordBegin);
    const std::string_view next = beginningOf(from, columns);
    const bool fitsByItself =
        next.size() == from.size() || from[next.size()] == ' ' || next.find(' ') != std::string_view::npos;
    if (fitsByItself && line.find_first_not_of(' ') < wordBegin) {
        return wordBegin;
    }
    const std::size_t slash = line.rfind('/');
    if (slash != std::string_view::npos && slash > wordBegin) {
        return slash + 1;
    }
    // A character that is wider than the columns still has to be written.
    return std::max(line.size(), characterAt(text, 0).bytes);
}

/// The space that the cells of a column need.
struct ColumnNeed {
    std::size_t words = 1;  ///< the width without a broken word
    std::size_t cells = 1;  ///< the width without a break
};

using Widths = std::vector<std::size_t>;

std::size_t sumOf(const Widths& widths) {
    return std::accumulate(widths.begin(), widths.end(), std::size_t{0});
}

/// The widths if a column gets at most `most`, but at least its longest word, up to `wordMost`.
Widths widthsUpTo(std::size_t most, std::size_t wordMost, const std::vector<ColumnNeed>& needs) {
    Widths widths;
    for (const ColumnNeed& need : needs) {
        widths.push_back(
            std::max({std::size_t{1}, std::min(need.words, wordMost), std::min(need.cells, most)}));
    }
    return widths;
}

/// Divides the room among the columns; the widest columns shrink first. If not all words fit, words longer
/// than an equal share of the room are broken.
Widths divide(std::size_t room, const std::vector<ColumnNeed>& needs) {
    constexpr std::size_t kAny = std::numeric_limits<std::size_t>::max();
    if (Widths whole = widthsUpTo(kAny, kAny, needs); sumOf(whole) <= room) {
        return whole;
    }
    const std::size_t share = room / needs.size();
    const std::size_t wordMost = sumOf(widthsUpTo(0, kAny, needs)) <= room ? kAny : share;
    std::size_t most = 0;
    while (most < room && sumOf(widthsUpTo(most + 1, wordMost, needs)) <= room) {
        ++most;
    }
    return widthsUpTo(most, wordMost, needs);
}

/// Breaking between words leaves some columns unused. They go to the columns that are still broken, from the
/// last to the first.
void useWhatIsFree(Widths& widths, std::size_t room, const std::vector<std::vector<Cell>>& lines,
                   const std::vector<ColumnNeed>& needs) {
    Widths used(widths.size(), 1);
    for (const std::vector<Cell>& line : lines) {
        for (std::size_t column = 0; column < line.size(); ++column) {
            for (const std::string& piece : brokenInto(line[column].text, widths[column])) {
                used[column] = std::max(used[column], displayWidth(piece));
            }
        }
    }
    widths = std::move(used);
    for (std::size_t column = widths.size(); column-- > 0 && sumOf(widths) < room;) {
        const std::size_t wanted = std::max(needs[column].cells, widths[column]) - widths[column];
        widths[column] += std::min(wanted, room - sumOf(widths));
    }
}

Printable blanks(std::size_t count) {
    return printable(std::string(count, ' '));
}

void appendRow(Printable& text, const std::vector<Cell>& cells, const Widths& widths, bool coloured) {
    std::vector<std::vector<std::string>> pieces;
    std::size_t height = 1;
    for (std::size_t column = 0; column < cells.size(); ++column) {
        pieces.push_back(brokenInto(cells[column].text, widths[column]));
        height = std::max(height, pieces.back().size());
    }
    for (std::size_t row = 0; row < height; ++row) {
        std::size_t gap = 0;
        for (std::size_t column = 0; column < cells.size(); ++column) {
            const std::string piece = row < pieces[column].size() ? pieces[column][row] : std::string();
            if (!piece.empty()) {
                text += blanks(gap);
                text += paint(printable(piece), cells[column].colour, coloured);
                gap = 0;
            }
            const std::size_t used = displayWidth(piece);
            gap += widths[column] - std::min(used, widths[column]) + kColumnGap;
        }
        text += "\n";
    }
}

}  // namespace

Screen screenAt(int descriptor) {
    return {columnsAt(descriptor), isTerminal(descriptor), wantsColour(descriptor)};
}

bool isTerminal(int descriptor) {
    return isatty(descriptor) == 1;
}

bool wantsColour(int descriptor) {
    return isTerminal(descriptor) && std::getenv("NO_COLOR") == nullptr;
}

std::size_t columnsAt(int descriptor) {
    winsize size{};
    const bool known = ioctl(descriptor, TIOCGWINSZ, &size) == 0 && size.ws_col != 0;
    return known ? size.ws_col : kUsualColumns;
}

Printable paint(PrintableView text, Colour colour, bool coloured) {
    if (!coloured || colour == Colour::Plain) {
        return text;
    }
    return Printable(kColourCodes.at(static_cast<std::size_t>(colour))) + text + kColourEnd;
}

std::size_t displayWidth(std::string_view text) {
    std::size_t columns = 0;
    for (std::size_t at = 0; at < text.size();) {
        const Character character = characterAt(text, at);
        columns += character.columns;
        at += character.bytes;
    }
    return columns;
}

std::string_view beginningOf(std::string_view text, std::size_t columns) {
    std::size_t used = 0;
    std::size_t at = 0;
    while (at < text.size()) {
        const Character character = characterAt(text, at);
        used += character.columns;
        if (used > columns) {
            break;
        }
        at += character.bytes;
    }
    return text.substr(0, at);
}

std::vector<std::string> brokenInto(std::string_view text, std::size_t columns) {
    std::vector<std::string> lines;
    std::string_view rest = text;
    for (std::string_view line = beginningOf(rest, columns); line.size() < rest.size();
         line = beginningOf(rest, columns)) {
        line = rest.substr(0, lineEnd(rest, line, columns));
        lines.emplace_back(line.substr(0, line.find_last_not_of(' ') + 1));
        rest.remove_prefix(line.size());
        rest.remove_prefix(std::min(rest.find_first_not_of(' '), rest.size()));
    }
    if (!rest.empty() || lines.empty()) {
        lines.emplace_back(rest);
    }
    return lines;
}

Printable sentenceFor(const Screen& screen, std::string_view sentence, std::size_t indent) {
    const Printable safe = printable(sentence);
    if (!screen.terminal) {
        return safe;
    }
    const std::size_t columns = screen.columns > indent ? screen.columns - indent : 1;
    Printable text;
    for (const std::string& line : brokenInto(safe.text(), columns)) {
        text += text.empty() ? Printable() : "\n" + blanks(indent);
        text += printable(line);
    }
    return text;
}

TerminalTable::TerminalTable(std::vector<std::string> headings) : headings_(std::move(headings)) {}

void TerminalTable::addRow(std::vector<Cell> cells) {
    cells.resize(headings_.size());
    for (Cell& cell : cells) {
        cell.text = printable(cell.text);
    }
    rows_.push_back(std::move(cells));
}

Printable TerminalTable::render(const Screen& screen) const {
    std::vector<std::vector<Cell>> lines(1);
    for (const std::string& heading : headings_) {
        lines.front().push_back({printable(heading), Colour::Dim});
    }
    lines.insert(lines.end(), rows_.begin(), rows_.end());

    std::vector<ColumnNeed> needs(headings_.size());
    for (const std::vector<Cell>& line : lines) {
        for (std::size_t column = 0; column < line.size(); ++column) {
            ColumnNeed& need = needs[column];
            need.words = std::max(need.words, longestWord(line[column].text));
            need.cells = std::max(need.cells, displayWidth(line[column].text));
        }
    }
    const std::size_t gaps = kColumnGap * (needs.empty() ? 0 : needs.size() - 1);
    const std::size_t room = screen.columns > gaps ? screen.columns - gaps : 0;
    Widths widths = divide(room, needs);
    useWhatIsFree(widths, room, lines, needs);

    Printable text;
    for (const std::vector<Cell>& line : lines) {
        appendRow(text, line, widths, screen.coloured);
    }
    return text;
}

Printable TerminalTable::render(bool coloured) const {
    return render({std::numeric_limits<std::size_t>::max(), false, coloured});
}

}  // namespace vxcommon
