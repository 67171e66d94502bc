#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace vxcommon {

enum class Colour { Plain, Good, Bad, Dim };

/// One cell of a table: its text, and the colour it gets on a terminal.
struct Cell {
    std::string text;
    Colour colour = Colour::Plain;
};

/// Whether text written to the descriptor reaches a person's terminal: colours, a live bar and line
/// rewriting are for it alone. Respects NO_COLOR only in `wantsColour`.
bool isTerminal(int descriptor);
bool wantsColour(int descriptor);

/// The text in the colour, or unchanged when `coloured` is false.
std::string paint(std::string_view text, Colour colour, bool coloured);

/// How many columns the UTF-8 text takes on a terminal, one for each character.
std::size_t displayWidth(std::string_view text);

/// Text for a terminal or a line of a log: control characters, which a name on a stick may hold, are
/// written as \xNN, so that no text of somebody else's steers the terminal.
std::string printable(std::string_view text);

/// Rows under headings, in columns as wide as their widest cell. Cells are passed through `printable`.
class TerminalTable {
 public:
    explicit TerminalTable(std::vector<std::string> headings);
    void addRow(std::vector<Cell> cells);
    /// The whole table, each line ended by a line feed; colours only where `coloured`.
    std::string render(bool coloured) const;

 private:
    std::vector<std::string> headings_;
    std::vector<std::vector<Cell>> rows_;
};

}  // namespace vxcommon
