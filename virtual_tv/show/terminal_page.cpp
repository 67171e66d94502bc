#include "virtual_tv/show/terminal_page.h"

#include <fmt/format.h>

namespace vxtv::show {

namespace {

using vxcommon::Printable;
using vxcommon::printable;
using vxcommon::printableFormat;
using vxcommon::PrintableView;
using vxcommon::Screen;
using vxcommon::TerminalTable;

Printable heading(const std::string& text) {
    const Printable line = printable(text);
    return printableFormat("\n{}\n{}\n", line,
                           printable(std::string(vxcommon::displayWidth(line.text()), '=')));
}

Printable factTable(const std::vector<Fact>& facts, const Screen& screen) {
    TerminalTable table({"What", "Value"});
    for (const Fact& fact : facts) {
        table.addRow({{fact.name}, {fact.value, fact.colour}});
    }
    return facts.empty() ? Printable() : table.render(screen);
}

Printable gridTable(const Grid& grid, const Screen& screen) {
    TerminalTable table(grid.columns);
    for (const auto& row : grid.rows) {
        std::vector<vxcommon::Cell> cells;
        for (const GridCell& cell : row) {
            cells.push_back({cell.text, cell.colour});
        }
        table.addRow(std::move(cells));
    }
    const Printable rest =
        grid.leftOut != 0 ? printableFormat("... and {} more\n", grid.leftOut) : Printable();
    return grid.rows.empty() ? Printable("none\n") : table.render(screen) + rest;
}

Printable pictureTable(const std::vector<Picture>& pictures, const Screen& screen) {
    TerminalTable table({"Picture", "Kind", "Pixels", "Bytes"});
    for (const Picture& picture : pictures) {
        const bool isPicture = !picture.mediaType.empty();
        table.addRow(
            {{picture.name},
             {isPicture ? picture.mediaType : picture.trouble, isPicture ? Colour::Plain : Colour::Bad},
             {isPicture ? fmt::format("{} x {}", picture.width, picture.height) : "-"},
             {std::to_string(picture.size)}});
    }
    return pictures.empty() ? Printable() : table.render(screen);
}

Printable cardTitle(const Card& card, const Screen& screen) {
    const Printable title = printable(card.title);
    const Printable note = printable(card.note);
    const bool fits =
        vxcommon::displayWidth(title.text()) + vxcommon::displayWidth(note.text()) + 2 <= screen.columns;
    const PrintableView gap = note.empty() ? PrintableView("")
                              : fits       ? PrintableView("  ")
                                           : PrintableView("\n");
    return "\n" + sentenceFor(screen, title.text()) + gap +
           vxcommon::paint(sentenceFor(screen, note.text()), Colour::Dim, screen.coloured && !note.empty()) +
           "\n";
}

/// The text on a line of its own; empty for an empty text.
Printable lineOf(const std::string& text, const Screen& screen) {
    return text.empty() ? Printable() : sentenceFor(screen, text) + "\n";
}

Printable cardText(const Card& card, const Screen& screen) {
    Printable text = card.title.empty() ? Printable() : cardTitle(card, screen);
    if (card.percent) {
        text += printableFormat("{} percent done\n", *card.percent);
    }
    text += factTable(card.facts, screen);
    for (const Grid& grid : card.grids) {
        text += gridTable(grid, screen);
    }
    return text + pictureTable(card.pictures, screen);
}

}  // namespace

Printable terminalPage(const Page& page, const Screen& screen) {
    Printable text =
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
