#include <fmt/format.h>

#include <algorithm>

#include "virtual_tv/channels/channel_store.h"
#include "virtual_tv/channels/navigation_lists.h"
#include "virtual_tv/show/sections.h"

namespace vxtv::show {

namespace {

/// Scan tables give the frequencies of a satellite in kHz, all others in Hz.
std::string megahertz(const Transponder& transponder) {
    const bool isSatellite = transponder.system.rfind("DVBS", 0) == 0;
    return fmt::format("{:.7g} MHz", static_cast<double>(transponder.frequency) / (isSatellite ? 1e3 : 1e6));
}

Card channelCard(const ChannelMap& map, std::size_t most) {
    Grid grid{{"Number", "Name", "Kind", "Transponder"}, {}};
    const std::size_t shown = std::min(most, map.channels.size());
    for (std::size_t at = 0; at < shown; ++at) {
        const Channel& channel = map.channels[at];
        const Transponder& transponder =
            map.transponders.at(static_cast<std::size_t>(channel.transponder) - 1);
        grid.rows.push_back({{std::to_string(channel.number)},
                             {channel.name},
                             {fmt::format("{}{}", channel.isRadio ? "radio" : "television",
                                          channel.isEncrypted ? ", encrypted" : "")},
                             {fmt::format("{}, {}", transponder.system, megahertz(transponder))}});
    }
    grid.leftOut = map.channels.size() - shown;
    return {"All channels",
            fmt::format("{} on {} transponders", map.channels.size(), map.transponders.size()),
            std::nullopt,
            {},
            {std::move(grid)}};
}

Card hotelCard(const std::vector<HotelChannel>& list) {
    Grid grid{{"Place", "Name", "Channel"}, {}};
    for (const HotelChannel& line : list) {
        grid.rows.push_back(
            {{std::to_string(grid.rows.size() + 1)}, {line.name}, {std::to_string(line.channel)}});
    }
    return {"The hotel's own list", "", std::nullopt, {}, {std::move(grid)}};
}

Card navigationCard(const std::vector<NavigationEntry>& entries) {
    Grid grid{{"List", "Mode", "Id", "State"}, {}};
    for (const NavigationEntry& entry : entries) {
        grid.rows.push_back(
            {{fmt::format("{}", fmt::join(entry.names, ", "))},
             {std::to_string(entry.mode)},
             {std::to_string(entry.id)},
             {entry.isStale ? "out of date" : "good", entry.isStale ? Colour::Bad : Colour::Good}});
    }
    return {"Navigation lists", "", std::nullopt, {}, {std::move(grid)}};
}

}  // namespace

Result<Section> channelsSection(const Television& television, std::size_t mostChannels) {
    Section section{"channels", "Channels", ""};
    const ChannelStore store(television.database());
    const auto filled = store.map()
                            .and_then([&](const ChannelMap& map) {
                                section.cards.push_back(channelCard(map, mostChannels));
                                return store.hotelList();
                            })
                            .and_then([&](const std::vector<HotelChannel>& list) {
                                section.cards.push_back(hotelCard(list));
                                return NavigationLists(television.database()).list({});
                            })
                            .map([&](const std::vector<NavigationEntry>& entries) {
                                section.cards.push_back(navigationCard(entries));
                            });
    return filled ? Result<Section>(std::move(section)) : absentOr(filled.error(), std::move(section));
}

}  // namespace vxtv::show
