#include <fmt/format.h>

#include <algorithm>

#include "virtual_tv/applications/application_data.h"
#include "virtual_tv/applications/application_run.h"
#include "virtual_tv/applications/applications.h"
#include "virtual_tv/show/sections.h"
#include "virtual_tv/show/value_cards.h"
#include "virtual_tv/store/folder.h"

namespace vxtv::show {

namespace {

constexpr std::pair<PictureArea, const char*> kAreas[] = {
    {kBootLogoArea, "Boot logo"}, {kHomeMenuArea, "Home menu"}, {kMbrLogoArea, "Set-top box"}};

/// The data of the application without the files that are shown as pictures.
std::vector<Fact> contentFacts(const Texts& texts, const std::string& id,
                               const std::vector<Picture>& pictures) {
    const std::string prefix = id + "/";
    std::vector<Fact> facts;
    for (auto text = texts.lower_bound(prefix);
         text != texts.end() && text->first.compare(0, prefix.size(), prefix) == 0; ++text) {
        const std::string name = text->first.substr(prefix.size());
        const bool isShown = std::any_of(pictures.begin(), pictures.end(),
                                         [&name](const Picture& picture) { return picture.name == name; });
        if (!isShown) {
            facts.push_back(factOf(name, text->second));
        }
    }
    return facts;
}

Card applicationCard(const Television& television, const std::string& id, const Texts& texts,
                     PictureReader& reader) {
    const Applications applications(television.folder());
    const auto manifest = applications.find(id);
    Card card;
    card.title = manifest ? manifest->title : id;
    card.note = id;
    if (manifest) {
        const bool runs = runningProcess(television.folder(), id).has_value();
        card.facts = {{"state", runs ? "runs" : "does not run", runs ? Colour::Good : Colour::Dim},
                      {"started by every session", manifest->autostart ? "yes" : "no"}};
    } else {
        card.facts = {{"state", manifest.error().sentence, Colour::Bad}};
    }
    for (Picture& picture : reader.readFolder(applications.dataOf(id))) {
        if (!picture.mediaType.empty()) {
            card.pictures.push_back(std::move(picture));
        }
    }
    const auto content = contentFacts(texts, id, card.pictures);
    card.facts.insert(card.facts.end(), content.begin(), content.end());
    return card;
}

}  // namespace

Result<Section> applicationsSection(const Television& television, PictureReader& pictures) {
    const auto ids = Applications(television.folder()).ids();
    const auto texts = ids ? applicationTexts(television.folder()) : tl::make_unexpected(ids.error());
    VX_RETURN_IF_FAILED(texts);
    Section section{"applications", "Applications", ids->empty() ? "It has no application." : ""};
    for (const std::string& id : *ids) {
        section.cards.push_back(applicationCard(television, id, texts->value_or(Texts()), pictures));
    }
    return section;
}

Section picturesSection(const Television& television, PictureReader& pictures) {
    Section section{"pictures", "Pictures", ""};
    for (const auto& [area, title] : kAreas) {
        Card card{title, std::string(area.path)};
        card.pictures = pictures.readFolder(placeOf(television.folder(), area.path));
        if (card.pictures.empty()) {
            card.facts.push_back({"files", "none", Colour::Dim});
        }
        section.cards.push_back(std::move(card));
    }
    return section;
}

}  // namespace vxtv::show
