#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "common/printable.h"

namespace vxcommon {

/// Good and Bad are known results; `Doubt` is an unknown one.
enum class Colour { Plain, Good, Bad, Doubt, Dim };

/// One cell of a table: its text, and the colour it gets on a terminal.
struct Cell {
    std::string text;
    Colour colour = Colour::Plain;
};

/// The width of a table if there is no terminal.
inline constexpr std::size_t kUsualColumns = 80;

/// The destination of text for people.
struct Screen {
    std::size_t columns = kUsualColumns;  ///< no line of a table is longer
    bool terminal = false;                ///< a person's terminal, not a file or pipe
    bool coloured = false;
};

/// The screen at the descriptor: the columns of its terminal, or the default. Colours are used only on a
/// terminal, and not if NO_COLOR is set.
Screen screenAt(int descriptor);

/// Whether the descriptor is a person's terminal. Only such a terminal gets colours, a live bar and rewritten
/// lines. NO_COLOR is respected only in `wantsColour`.
bool isTerminal(int descriptor);
bool wantsColour(int descriptor);

/// The current number of columns of the terminal at the descriptor, or the default if it is no terminal.
std::size_t columnsAt(int descriptor);

/// The text in the colour, or unchanged when `coloured` is false.
Printable paint(PrintableView text, Colour colour, bool coloured);

/// The number of columns that the UTF-8 text needs on a terminal.
std::size_t displayWidth(std::string_view text);

/// The longest beginning of the text that fits the columns.
std::string_view beginningOf(std::string_view text, std::size_t columns);

/// The text broken between words into lines of at most `columns` (1 or more). A word longer than a line is
/// broken after a slash, or else at the end of the line. There is at least one line, which is empty for an
/// empty text.
std::vector<std::string> brokenInto(std::string_view text, std::size_t columns);

/// The sentence for the screen, made printable, without a line feed at its end. On a terminal it is broken
/// between words, and all lines except the first begin with `indent` blanks. Otherwise it is one line of any
/// length, so that programs can find it.
Printable sentenceFor(const Screen& screen, std::string_view sentence, std::size_t indent = 0);

/// A table with headings. Cells are made printable. If the screen is wide enough, each column is as wide as
/// its widest cell. Otherwise the widest columns shrink, and their cells continue in the next line of the
/// same column. The table is wider than the screen only if there is not even room for one character in each
/// column.
class TerminalTable {
 public:
    explicit TerminalTable(std::vector<std::string> headings);
    void addRow(std::vector<Cell> cells);
    /// The whole table, each line ended by a line feed; no line ends with blanks.
    Printable render(const Screen& screen) const;
    /// The same, as wide as its cells need.
    Printable render(bool coloured) const;

 private:
    std::vector<std::string> headings_;
    std::vector<std::vector<Cell>> rows_;
};

}  // namespace vxcommon
