#include <fmt/format.h>

#include <array>
#include <string_view>

#include "virtual_tv/services/data_services.h"
#include "virtual_tv/services/network_time.h"
#include "virtual_tv/services/source_list.h"
#include "virtual_tv/services/timer_store.h"
#include "virtual_tv/show/sections.h"
#include "virtual_tv/show/value_cards.h"
#include "virtual_tv/store/folder.h"

namespace vxtv::show {

namespace {

struct ValueSection {
    const char* service;  ///< as in dataServices(); the section's id, too
    const char* title;
};
constexpr std::array kValueSections = {
    ValueSection{"av", "Picture and sound"}, ValueSection{"settings", "Menu"},
    ValueSection{"home-data", "Home screen"}, ValueSection{"was", "Web applications"},
    ValueSection{"factory", "Factory"}};

/// The cards of a service. An error if the television lacks it.
Result<std::vector<Card>> serviceCards(const Television& television, std::string_view name) {
    return television.database().read([name](SQLite::Database& connection) {
        return requireDataService(connection, name).map([&connection, name] {
            const DataService& service = *findDataService(name);
            std::vector<Card> cards = cardsOf(service.texts(connection));
            const Texts kept = service.keptTexts != nullptr ? service.keptTexts(connection) : Texts();
            for (Card& card : cardsOf(kept)) {
                card.note = "stays with this television";
                cards.push_back(std::move(card));
            }
            return cards;
        });
    });
}

GridCell iconCell(const Television& television, const std::string& path, PictureReader& pictures) {
    return {path, Colour::Plain, pictures.read(placeOf(television.folder(), path), path)};
}

}  // namespace

Result<Section> absentOr(const Error& error, Section section) {
    if (error.code != ErrorCode::UnknownService) {
        return tl::make_unexpected(error);
    }
    section.cards.clear();
    section.note = "This television has no such service.";
    return section;
}

Result<std::vector<Section>> valueSections(const Television& television) {
    std::vector<Section> sections;
    for (const auto& [service, title] : kValueSections) {
        Section section{fmt::format("service-{}", service), title, ""};
        const auto filled = serviceCards(television, service)
                                .map([&section](std::vector<Card> cards) {
                                    section.cards = std::move(cards);
                                    return section;
                                })
                                .or_else([&section](const Error& error) { return absentOr(error, section); });
        VX_RETURN_IF_FAILED(filled);
        sections.push_back(*filled);
    }
    return sections;
}

Result<Section> timersSection(const Television& television) {
    Section section{"timers", "Timers", ""};
    const auto timers = TimerStore(television.database()).list();
    if (!timers) {
        return absentOr(timers.error(), std::move(section));
    }
    Grid grid{{"Id", "Title", "Kind", "Start", "Minutes", "Repeat", "Channel"}, {}};
    for (const Timer& timer : *timers) {
        grid.rows.push_back({{std::to_string(timer.id)},
                             {timer.title},
                             {timer.kind},
                             {timer.start},
                             {std::to_string(timer.minutes)},
                             {timer.repeat},
                             {timer.channel != 0 ? std::to_string(timer.channel) : "last"}});
    }
    section.cards.push_back({"", "", std::nullopt, {}, {std::move(grid)}});
    return section;
}

Result<Section> sourcesSection(const Television& television, PictureReader& pictures) {
    Section section{"sources", "Sources", ""};
    const auto sources = SourceList(television.database()).list();
    if (!sources) {
        return absentOr(sources.error(), std::move(section));
    }
    Grid grid{{"Id", "Name", "Icon type", "Icon", "Application icon", "Second application icon"}, {}};
    for (const Source& source : *sources) {
        std::vector<GridCell> row = {
            {std::to_string(source.id)}, {source.name}, {std::to_string(source.iconType)}};
        if (source.icons) {
            row.push_back(iconCell(television, source.icons->icon, pictures));
            row.push_back(iconCell(television, source.icons->firstAppIcon, pictures));
            row.push_back(iconCell(television, source.icons->secondAppIcon, pictures));
        }
        row.resize(grid.columns.size(), {"-", Colour::Dim});
        grid.rows.push_back(std::move(row));
    }
    section.cards.push_back({"", "", std::nullopt, {}, {std::move(grid)}});
    return section;
}

Result<Section> networkTimeSection(const Television& television) {
    Section section{"network-time", "Network time", ""};
    const auto state = NetworkTime(television.database()).state();
    if (!state) {
        return absentOr(state.error(), std::move(section));
    }
    section.cards.push_back(
        {"",
         "",
         std::nullopt,
         {{"supported", state->supported ? "yes" : "no"},
          {"in use", state->on ? "yes" : "no"},
          {"time zone", std::to_string(state->timezone)},
          {"server", state->server.empty() ? "chosen by the television" : state->server}}});
    return section;
}

}  // namespace vxtv::show
