#include "virtual_tv/show/html_card.h"

#include <fmt/format.h>

#include <algorithm>

namespace vxtv::show {

namespace {

/// The style of a colour. Colours never say anything that the text does not.
std::string classOf(Colour colour) {
    switch (colour) {
        case Colour::Good:
            return "good";
        case Colour::Bad:
            return "bad";
        case Colour::Doubt:
            return "doubt";
        case Colour::Dim:
            return "dim";
        case Colour::Plain:
            break;
    }
    return "plain";
}

std::string sizeText(std::uintmax_t bytes) {
    constexpr double kKilobyte = 1000;
    return bytes < 1000 ? fmt::format("{} bytes", bytes)
                        : fmt::format("{:.1f} kB", static_cast<double>(bytes) / kKilobyte);
}

Markup cellContent(const GridCell& cell) {
    if (!cell.picture) {
        return Markup::element("span", {{"class", classOf(cell.colour)}}, Markup::text(cell.text));
    }
    const Markup path = Markup::element("code", {}, Markup::text(cell.text));
    return cell.picture->bytes.empty()
               ? path + Markup::element("span", {{"class", "bad"}}, Markup::text(cell.picture->trouble))
               : imageOf(*cell.picture, "Icon") + path;
}

Markup rowOf(const std::vector<GridCell>& row) {
    Markup cells;
    for (const GridCell& cell : row) {
        cells += cells.empty() ? Markup::element("th", {{"scope", "row"}}, cellContent(cell))
                               : Markup::element("td", {}, cellContent(cell));
    }
    return Markup::element("tr", {}, cells);
}

Markup gridOf(const Grid& grid) {
    Markup headings;
    for (const std::string& column : grid.columns) {
        headings += column.empty() ? Markup::element("td", {}, Markup())
                                   : Markup::element("th", {{"scope", "col"}}, Markup::text(column));
    }
    Markup rows;
    for (const auto& row : grid.rows) {
        rows += rowOf(row);
    }
    if (grid.rows.empty()) {
        return Markup::element("p", {{"class", "note"}}, Markup::text("none"));
    }
    const Markup table = Markup::element("table", {},
                                         Markup::element("thead", {}, Markup::element("tr", {}, headings)) +
                                             Markup::element("tbody", {}, rows));
    const Markup rest = grid.leftOut == 0
                            ? Markup()
                            : Markup::element("p", {{"class", "note"}},
                                              Markup::text(fmt::format("... and {} more", grid.leftOut)));
    return Markup::element("div", {{"class", "scroll"}}, table) + rest;
}

/// Whether the table needs the whole width of the page.
bool isLarge(const Grid& grid) {
    constexpr std::size_t kMostColumns = 4;
    constexpr std::size_t kMostRows = 10;
    return grid.columns.size() > kMostColumns || grid.rows.size() > kMostRows;
}

Markup figureOf(const Picture& picture) {
    const Markup name = Markup::element("span", {{"class", "name"}}, Markup::text(picture.name));
    if (picture.bytes.empty()) {
        return Markup::element("figure", {{"class", "missing"}},
                               Markup::element("p", {}, Markup::text("Not shown: " + picture.trouble)) +
                                   Markup::element("figcaption", {}, name));
    }
    const std::string measures =
        fmt::format("{} x {}, {}", picture.width, picture.height, sizeText(picture.size));
    return Markup::element(
        "figure", {},
        imageOf(picture, "Picture") + Markup::element("figcaption", {}, name + Markup::text(" " + measures)));
}

Markup progressOf(int percent) {
    const std::string value = std::to_string(std::clamp(percent, 0, 100));
    const std::string text = fmt::format("{} percent done", percent);
    return Markup::element(
        "p", {{"class", "progress"}},
        Markup::element("progress", {{"max", "100"}, {"value", value}, {"aria-label", text}}, Markup()) +
            Markup::text(" " + text));
}

Markup galleryOf(const std::vector<Picture>& pictures) {
    Markup figures;
    for (const Picture& picture : pictures) {
        figures += figureOf(picture);
    }
    return figures.empty() ? Markup() : Markup::element("div", {{"class", "gallery"}}, figures);
}

Markup titleOf(const Card& card) {
    Markup title = card.title.empty() ? Markup() : Markup::element("h3", {}, Markup::text(card.title));
    if (!card.note.empty()) {
        title += Markup::element("p", {{"class", "note"}}, Markup::text(card.note));
    }
    return title;
}

}  // namespace

Markup imageOf(const Picture& picture, const std::string& whatItShows) {
    return Markup::single("img", {{"src", dataAddress(picture.mediaType, picture.bytes)},
                                  {"alt", whatItShows + " " + picture.name},
                                  {"width", std::to_string(picture.width)},
                                  {"height", std::to_string(picture.height)}});
}

Markup factList(const std::vector<Fact>& facts) {
    Markup list;
    for (const Fact& fact : facts) {
        list += Markup::element(
            "div", {},
            Markup::element("dt", {}, Markup::text(fact.name)) +
                Markup::element("dd", {{"class", classOf(fact.colour)}}, Markup::text(fact.value)));
    }
    return list.empty() ? Markup() : Markup::element("dl", {}, list);
}

Markup cardOf(const Card& card) {
    Markup content = titleOf(card) + galleryOf(card.pictures);
    if (card.percent) {
        content += progressOf(*card.percent);
    }
    content += factList(card.facts);
    for (const Grid& grid : card.grids) {
        content += gridOf(grid);
    }
    const bool isWide = std::any_of(card.grids.begin(), card.grids.end(), isLarge);
    return Markup::element("article", {{"class", isWide ? "card wide" : "card"}}, content);
}

}  // namespace vxtv::show
