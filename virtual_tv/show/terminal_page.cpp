#include "virtual_tv/show/terminal_page.h"

#include <fmt/format.h>

namespace vxtv::show {

namespace {

using vxcommon::Screen;
using vxcommon::TerminalTable;

std::string heading(const std::string& text) {
    const std::string line = vxcommon::printable(text);
    return fmt::format("\n{}\n{}\n", line, std::string(vxcommon::displayWidth(line), '='));
}

std::string factTable(const std::vector<Fact>& facts, const Screen& screen) {
    TerminalTable table({"What", "Value"});
    for (const Fact& fact : facts) {
        table.addRow({{fact.name}, {fact.value, fact.colour}});
    }
    return facts.empty() ? "" : table.render(screen);
}

std::string gridTable(const Grid& grid, const Screen& screen) {
    TerminalTable table(grid.columns);
    for (const auto& row : grid.rows) {
        std::vector<vxcommon::Cell> cells;
        for (const GridCell& cell : row) {
            cells.push_back({cell.text, cell.colour});
        }
        table.addRow(std::move(cells));
    }
    const std::string rest = grid.leftOut != 0 ? fmt::format("... and {} more\n", grid.leftOut) : "";
    return grid.rows.empty() ? "none\n" : table.render(screen) + rest;
}

std::string pictureTable(const std::vector<Picture>& pictures, const Screen& screen) {
    TerminalTable table({"Picture", "Kind", "Pixels", "Bytes"});
    for (const Picture& picture : pictures) {
        const bool isPicture = !picture.mediaType.empty();
        table.addRow(
            {{picture.name},
             {isPicture ? picture.mediaType : picture.trouble, isPicture ? Colour::Plain : Colour::Bad},
             {isPicture ? fmt::format("{} x {}", picture.width, picture.height) : "-"},
             {std::to_string(picture.size)}});
    }
    return pictures.empty() ? "" : table.render(screen);
}

std::string cardTitle(const Card& card, const Screen& screen) {
    const std::string title = vxcommon::printable(card.title);
    const std::string note = vxcommon::printable(card.note);
    const bool fits = vxcommon::displayWidth(title) + vxcommon::displayWidth(note) + 2 <= screen.columns;
    const std::string gap = note.empty() ? "" : fits ? "  " : "\n";
    return "\n" + vxcommon::sentenceFor(screen, title) + gap +
           vxcommon::paint(vxcommon::sentenceFor(screen, note), Colour::Dim,
                           screen.coloured && !note.empty()) +
           "\n";
}

/// A line of its own, when there is any text.
std::string lineOf(const std::string& text, const Screen& screen) {
    return text.empty() ? "" : vxcommon::sentenceFor(screen, vxcommon::printable(text)) + "\n";
}

std::string cardText(const Card& card, const Screen& screen) {
    std::string text = card.title.empty() ? "" : cardTitle(card, screen);
    if (card.percent) {
        text += fmt::format("{} percent done\n", *card.percent);
    }
    text += factTable(card.facts, screen);
    for (const Grid& grid : card.grids) {
        text += gridTable(grid, screen);
    }
    return text + pictureTable(card.pictures, screen);
}

}  // namespace

std::string terminalPage(const Page& page, const Screen& screen) {
    std::string text =
        lineOf(page.folder, screen) + lineOf(page.welcomeTitle, screen) + lineOf(page.welcomeText, screen);
    text += heading("Television") + factTable(page.identity, screen);
    for (const Section& section : page.sections) {
        text += heading(section.title);
        text += lineOf(section.note, screen);
        for (const Card& card : section.cards) {
            text += cardText(card, screen);
        }
    }
    return text;
}

}  // namespace vxtv::show
