#include "virtual_tv/show/html_page.h"

#include <fmt/format.h>

#include "virtual_tv/show/html_card.h"
#include "virtual_tv/show/style.h"

namespace vxtv::show {

namespace {

Markup head(const Page& page) {
    return Markup::element(
        "head", {},
        Markup::single("meta", {{"charset", "utf-8"}}) +
            // Nothing in the page may load or run anything, whatever a name in it may try.
            Markup::single("meta",
                           {{"http-equiv", "Content-Security-Policy"},
                            {"content", "default-src 'none'; img-src data:; style-src 'unsafe-inline'"}}) +
            Markup::single("meta",
                           {{"name", "viewport"}, {"content", "width=device-width, initial-scale=1"}}) +
            Markup::single("meta", {{"name", "color-scheme"}, {"content", "light dark"}}) +
            Markup::element("title", {}, Markup::text(page.model + " - " + page.folder)) +
            Markup::element("style", {}, Markup::constant(kStyle)));
}

/// The identity without the model, which is the heading, and names without the path that all features share.
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
