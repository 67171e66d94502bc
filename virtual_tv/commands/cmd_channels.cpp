#include <fmt/format.h>

#include <memory>

#include "common/terminal_table.h"
#include "virtual_tv/channels/channel_json.h"
#include "virtual_tv/channels/channel_store.h"
#include "virtual_tv/channels/navigation_lists.h"
#include "virtual_tv/commands/command.h"
#include "virtual_tv/commands/output.h"
#include "virtual_tv/television/television.h"

namespace vxtv {

namespace {

using vxcommon::Colour;
using vxcommon::TerminalTable;
using Json = nlohmann::ordered_json;

struct ChannelsOptions {
    std::string folder;
    bool json = false;
};

struct ChannelContent {
    ChannelMap map;
    std::vector<HotelChannel> hotelList;
    std::vector<NavigationEntry> navigation;
};

Result<ChannelContent> contentOf(const std::string& folder) {
    const Result<Television> television = Television::open(folder);
    VX_RETURN_IF_FAILED(television);
    const ChannelStore store(television->database());
    ChannelContent content;
    return store.map()
        .and_then([&](ChannelMap map) {
            content.map = std::move(map);
            return store.hotelList();
        })
        .and_then([&](std::vector<HotelChannel> hotelList) {
            content.hotelList = std::move(hotelList);
            return NavigationLists(television->database()).list({});
        })
        .map([&](std::vector<NavigationEntry> navigation) {
            content.navigation = std::move(navigation);
            return std::move(content);
        });
}

std::string namesOf(const NavigationEntry& entry) {
    std::string names;
    for (const std::string& name : entry.names) {
        names += (names.empty() ? "" : ", ") + name;
    }
    return names;
}

std::string placesOf(const NavigationEntry& entry) {
    std::string places;
    for (const TvMode& place : entry.places) {
        places += fmt::format("{}{}/{}", places.empty() ? "" : " ", place.antenna, place.service);
    }
    return places;
}

Json navigationJson(const std::vector<NavigationEntry>& navigation) {
    Json document = Json::array();
    for (const NavigationEntry& entry : navigation) {
        Json places = Json::array();
        for (const TvMode& place : entry.places) {
            places.push_back({{"antenna", place.antenna}, {"service", place.service}});
        }
        document.push_back({{"mode", entry.mode},
                            {"id", entry.id},
                            {"names", entry.names},
                            {"order", entry.order},
                            {"flag", entry.flag},
                            {"stale", entry.isStale},
                            {"places", places}});
    }
    return document;
}

vxcommon::Printable channelTable(const ChannelMap& map, const vxcommon::Screen& screen) {
    TerminalTable table({"CHANNEL", "NAME", "KIND", "SERVICE", "SYSTEM", "FREQUENCY"});
    for (const Channel& channel : map.channels) {
        const Transponder& transponder =
            map.transponders.at(static_cast<std::size_t>(channel.transponder) - 1);
        table.addRow({{std::to_string(channel.number)},
                      {channel.name},
                      {fmt::format("{}{}", channel.isRadio ? "radio" : "tv",
                                   channel.isEncrypted ? ", encrypted" : "")},
                      {std::to_string(channel.serviceId)},
                      {transponder.system},
                      {std::to_string(transponder.frequency)}});
    }
    return table.render(screen);
}

vxcommon::Printable hotelTable(const std::vector<HotelChannel>& hotelList, const vxcommon::Screen& screen) {
    TerminalTable table({"HOTEL LIST", "NAME", "CHANNEL"});
    std::size_t position = 0;
    for (const HotelChannel& line : hotelList) {
        table.addRow({{std::to_string(++position)}, {line.name}, {std::to_string(line.channel)}});
    }
    return table.render(screen);
}

vxcommon::Printable navigationTable(const std::vector<NavigationEntry>& navigation,
                                    const vxcommon::Screen& screen) {
    TerminalTable table({"NAVIGATION LIST", "MODE", "ID", "STATE", "ANTENNA/SERVICE MODES"});
    for (const NavigationEntry& entry : navigation) {
        table.addRow({{namesOf(entry)},
                      {std::to_string(entry.mode)},
                      {std::to_string(entry.id)},
                      {entry.isStale ? "out of date" : "good", entry.isStale ? Colour::Bad : Colour::Plain},
                      {placesOf(entry)}});
    }
    return table.render(screen);
}

int show(const ChannelsOptions& options) {
    const Result<ChannelContent> content = contentOf(options.folder);
    if (!content) {
        return complain(content.error());
    }
    if (options.json) {
        printJson({{"transponders", transpondersToJson(content->map.transponders)},
                   {"channels", channelsToJson(content->map.channels)},
                   {"hotelList", hotelListToJson(content->hotelList)},
                   {"navigation", navigationJson(content->navigation)}});
    } else {
        const vxcommon::Screen screen = outputScreen();
        print(channelTable(content->map, screen) + "\n" + hotelTable(content->hotelList, screen) + "\n" +
              navigationTable(content->navigation, screen));
    }
    return finishOutput();
}

}  // namespace

void addChannelsCommand(CLI::App& app, Action& chosen) {
    auto* const verb = app.add_subcommand("channels", "List channels, hotel list and navigation lists");
    const auto options = std::make_shared<ChannelsOptions>();
    verb->add_option("DIR", options->folder, "The television")->required();
    verb->add_flag("--json", options->json, "For programs: also the transponders, in full");
    verb->callback([options, &chosen] { chosen = [options] { return show(*options); }; });
}

}  // namespace vxtv
