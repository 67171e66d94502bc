#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "common/printable.h"

namespace vxcommon {

/// Good and bad are known; `Doubt` is what nobody could judge.
enum class Colour { Plain, Good, Bad, Doubt, Dim };

/// One cell of a table: its text, and the colour it gets on a terminal.
struct Cell {
    std::string text;
    Colour colour = Colour::Plain;
};

/// How wide a table is where no terminal says it.
inline constexpr std::size_t kUsualColumns = 80;

/// Where text for people goes.
struct Screen {
    std::size_t columns = kUsualColumns;  ///< no line of a table is longer
    bool terminal = false;                ///< a person's terminal, and no file or pipe
    bool coloured = false;
};

/// What is at the descriptor now: the columns of its terminal, or the usual ones; colours on a terminal, and
/// there only without NO_COLOR.
Screen screenAt(int descriptor);

/// Whether text written to the descriptor reaches a person's terminal: colours, a live bar and line
/// rewriting are for it alone. Respects NO_COLOR only in `wantsColour`.
bool isTerminal(int descriptor);
bool wantsColour(int descriptor);

/// How many columns the terminal at the descriptor has now; the usual ones where there is none.
std::size_t columnsAt(int descriptor);

/// The text in the colour, or unchanged when `coloured` is false.
Printable paint(PrintableView text, Colour colour, bool coloured);

/// How many columns the UTF-8 text takes on a terminal.
std::size_t displayWidth(std::string_view text);

/// The part of the text, from its beginning, that takes no more than so many columns.
std::string_view beginningOf(std::string_view text, std::size_t columns);

/// The text in lines of at most `columns` (1 or more) each, broken between words; a word that is longer than
/// a line is broken behind a slash, or else where the line ends. One line at least; an empty one for an empty
/// text.
std::vector<std::string> brokenInto(std::string_view text, std::size_t columns);

/// The sentence for the screen, passed through `printable`, without a line feed at its end. On a terminal it
/// is broken between words, and all lines but the first begin with `indent` blanks. Elsewhere it is one line,
/// whatever its length, so that programs find it.
Printable sentenceFor(const Screen& screen, std::string_view sentence, std::size_t indent = 0);

/// Rows under headings. Cells are passed through `printable`. Each column is as wide as its widest cell where
/// the screen has room for all; else the widest ones give way, and their cells are broken between words and
/// go on in the next line, in their column. Only a screen too narrow for one character in each column is
/// overrun.
class TerminalTable {
 public:
    explicit TerminalTable(std::vector<std::string> headings);
    void addRow(std::vector<Cell> cells);
    /// The whole table, each line ended by a line feed; no line ends with blanks.
    Printable render(const Screen& screen) const;
    /// The same as wide as its cells want.
    Printable render(bool coloured) const;

 private:
    std::vector<std::string> headings_;
    std::vector<std::vector<Cell>> rows_;
};

}  // namespace vxcommon
