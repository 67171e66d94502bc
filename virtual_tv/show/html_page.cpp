#include "virtual_tv/show/html_page.h"

#include <fmt/format.h>

#include <algorithm>

#include "virtual_tv/show/markup.h"
#include "virtual_tv/show/style.h"

namespace vxtv::show {

namespace {

/// The style of a colour. A colour never carries information that is not in the text.
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

/// The image element. Before: the picture has bytes.
Markup imageOf(const Picture& picture, const std::string& whatItShows) {
    return Markup::single("img", {{"src", dataAddress(picture.mediaType, picture.bytes)},
                                  {"alt", whatItShows + " " + picture.name},
                                  {"width", std::to_string(picture.width)},
                                  {"height", std::to_string(picture.height)}});
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

/// Empty if there are no facts.
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

Markup head(const Page& page) {
    return Markup::element(
        "head", {},
        Markup::single("meta", {{"charset", "utf-8"}}) +
            // The page must not load or run anything, even if a name in it contains markup.
            Markup::single("meta",
                           {{"http-equiv", "Content-Security-Policy"},
                            {"content", "default-src 'none'; img-src data:; style-src 'unsafe-inline'"}}) +
            Markup::single("meta",
                           {{"name", "viewport"}, {"content", "width=device-width, initial-scale=1"}}) +
            Markup::single("meta", {{"name", "color-scheme"}, {"content", "light dark"}}) +
            Markup::element("title", {}, Markup::text(page.model + " - " + page.folder)) +
            Markup::element("style", {}, Markup::constant(kStyle)));
}

/// The identity without the model, which is the heading; the names without the path that all features share.
std::vector<Fact> badgesOf(const Page& page) {
    std::vector<Fact> badges;
    for (const Fact& fact : page.identity) {
        if (fact.value != page.model) {
            const std::size_t start = fact.name.find_last_of("./");
            badges.push_back(
                {start == std::string::npos ? fact.name : fact.name.substr(start + 1), fact.value});
        }
    }
    return badges;
}

Markup greeting(const Page& page) {
    Markup content;
    if (page.logo) {
        content += imageOf(*page.logo, "Boot logo");
    }
    content += Markup::element("h1", {}, Markup::text(page.model));
    if (!page.welcomeTitle.empty()) {
        content += Markup::element("p", {{"class", "welcome"}}, Markup::text(page.welcomeTitle));
    }
    if (!page.welcomeText.empty()) {
        content += Markup::element("p", {}, Markup::text(page.welcomeText));
    }
    return Markup::element("div", {{"class", "greeting"}}, content + factList(badgesOf(page)));
}

Markup screen(const Page& page) {
    const Markup picture = page.screen ? imageOf(*page.screen, "What the home menu shows")
                                       : Markup::element("p", {}, Markup::text("No home menu picture"));
    return Markup::element("div", {{"class", "television"}},
                           Markup::element("div", {{"class", "screen"}}, picture));
}

Markup navigation(const Page& page) {
    Markup items;
    for (const Section& section : page.sections) {
        items += Markup::element(
            "li", {}, Markup::element("a", {{"href", "#" + section.id}}, Markup::text(section.title)));
    }
    return Markup::element("nav", {{"aria-label", "Sections"}}, Markup::element("ul", {}, items));
}

Markup sectionOf(const Section& section) {
    Markup content = Markup::element("h2", {}, Markup::text(section.title));
    if (!section.note.empty()) {
        content += Markup::element("p", {{"class", "note"}}, Markup::text(section.note));
    }
    Markup cards;
    for (const Card& card : section.cards) {
        cards += cardOf(card);
    }
    if (!cards.empty()) {
        content += Markup::element("div", {{"class", "cards"}}, cards);
    }
    return Markup::element("section", {{"id", section.id}}, content);
}

}  // namespace

std::string htmlPage(const Page& page, const std::string& madeAt) {
    Markup sections;
    for (const Section& section : page.sections) {
        sections += sectionOf(section);
    }
    const Markup body =
        Markup::element("header", {}, greeting(page) + screen(page)) + navigation(page) +
        Markup::element("main", {}, sections) +
        Markup::element("footer", {}, Markup::text(fmt::format("{}, as of {}", page.folder, madeAt)));
    const Markup document =
        Markup::constant("<!DOCTYPE html>\n") +
        Markup::element("html", {{"lang", "en"}}, head(page) + Markup::element("body", {}, body));
    return document.html() + "\n";
}

}  // namespace vxtv::show
