#include "virtual_tv/show/terminal_page.h"

#include <fmt/format.h>

namespace vxtv::show {

namespace {

using vxcommon::TerminalTable;

std::string heading(const std::string& text) {
    const std::string line = vxcommon::printable(text);
    return fmt::format("\n{}\n{}\n", line, std::string(vxcommon::displayWidth(line), '='));
}

std::string factTable(const std::vector<Fact>& facts, bool coloured) {
    TerminalTable table({"What", "Value"});
    for (const Fact& fact : facts) {
        table.addRow({{fact.name}, {fact.value, fact.colour}});
    }
    return facts.empty() ? "" : table.render(coloured);
}

std::string gridTable(const Grid& grid, bool coloured) {
    TerminalTable table(grid.columns);
    for (const auto& row : grid.rows) {
        std::vector<vxcommon::Cell> cells;
        for (const GridCell& cell : row) {
            cells.push_back({cell.text, cell.colour});
        }
        table.addRow(std::move(cells));
    }
    const std::string rest = grid.leftOut != 0 ? fmt::format("... and {} more\n", grid.leftOut) : "";
    return grid.rows.empty() ? "none\n" : table.render(coloured) + rest;
}

std::string pictureTable(const std::vector<Picture>& pictures, bool coloured) {
    TerminalTable table({"Picture", "Kind", "Pixels", "Bytes"});
    for (const Picture& picture : pictures) {
        const bool isPicture = !picture.mediaType.empty();
        table.addRow(
            {{picture.name},
             {isPicture ? picture.mediaType : picture.trouble, isPicture ? Colour::Plain : Colour::Bad},
             {isPicture ? fmt::format("{} x {}", picture.width, picture.height) : "-"},
             {std::to_string(picture.size)}});
    }
    return pictures.empty() ? "" : table.render(coloured);
}

std::string cardText(const Card& card, bool coloured) {
    std::string text;
    if (!card.title.empty()) {
        text += "\n" + vxcommon::printable(card.title);
        text += card.note.empty()
                    ? ""
                    : vxcommon::paint(vxcommon::printable("  " + card.note), Colour::Dim, coloured);
        text += "\n";
    }
    if (card.percent) {
        text += fmt::format("{} percent done\n", *card.percent);
    }
    text += factTable(card.facts, coloured);
    for (const Grid& grid : card.grids) {
        text += gridTable(grid, coloured);
    }
    return text + pictureTable(card.pictures, coloured);
}

}  // namespace

std::string terminalPage(const Page& page, bool coloured) {
    std::string text = vxcommon::printable(page.folder) + "\n";
    for (const std::string& line : {page.welcomeTitle, page.welcomeText}) {
        text += line.empty() ? "" : vxcommon::printable(line) + "\n";
    }
    text += heading("Television") + factTable(page.identity, coloured);
    for (const Section& section : page.sections) {
        text += heading(section.title);
        text += section.note.empty() ? "" : vxcommon::printable(section.note) + "\n";
        for (const Card& card : section.cards) {
            text += cardText(card, coloured);
        }
    }
    return text;
}

}  // namespace vxtv::show
