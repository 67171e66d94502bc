#include "virtual_tv/channels/channel_json.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "virtual_tv/base/json_reading.h"

namespace vxtv {

using Json = nlohmann::json;

namespace {

constexpr const char* kRadio = "radio";
constexpr const char* kTv = "tv";

Transponder transponderIn(const Json& value, const std::string& where) {
    expectOnly(value, where, {"system", "frequency", "parameters"});
    Transponder transponder;
    transponder.system = stringIn(memberOf(value, where, "system"), within(where, "system"));
    if (!isDeliverySystem(transponder.system)) {
        throw WrongMember{within(where, "system"), "is no delivery system"};
    }
    transponder.frequency =
        numberBetween(memberOf(value, where, "frequency"), within(where, "frequency"), 1, kHighestFrequency);
    const std::string inside = within(where, "parameters");
    const Json& parameters = memberOf(value, where, "parameters");
    expectObject(parameters, inside);
    for (const auto& [name, parameter] : parameters.items()) {
        transponder.parameters[name] = stringIn(parameter, inside);
        if (!isParameterText(name) || !isParameterText(transponder.parameters[name])) {
            throw WrongMember{inside, "has a name or a value that is none"};
        }
    }
    if (parameters.size() > kMostParameters) {
        throw WrongMember{inside, fmt::format("has more than {} members", kMostParameters)};
    }
    return transponder;
}

bool isRadioIn(const Json& value, const std::string& where) {
    const std::string kind = stringIn(value, where);
    if (kind != kRadio && kind != kTv) {
        throw WrongMember{where, "is neither tv nor radio"};
    }
    return kind == kRadio;
}

Channel channelIn(const Json& value, const std::string& where, std::size_t transponders) {
    expectOnly(value, where, {"number", "transponder", "serviceId", "name", "kind", "encrypted"});
    const auto numberIn = [&](const char* name, std::int64_t highest) {
        return static_cast<int>(numberBetween(memberOf(value, where, name), within(where, name), 1, highest));
    };
    Channel channel;
    channel.number = numberIn("number", kHighestChannelNumber);
    channel.transponder = numberIn("transponder", static_cast<std::int64_t>(transponders));
    channel.serviceId = numberIn("serviceId", kHighestServiceId);
    channel.name = visibleText(memberOf(value, where, "name"), within(where, "name"), kLongestChannelName);
    channel.isRadio = isRadioIn(memberOf(value, where, "kind"), within(where, "kind"));
    channel.isEncrypted = boolIn(memberOf(value, where, "encrypted"), within(where, "encrypted"));
    return channel;
}

bool hasChannel(const std::vector<Channel>& channels, int number) {
    const auto found =
        std::lower_bound(channels.begin(), channels.end(), number,
                         [](const Channel& channel, int wanted) { return channel.number < wanted; });
    return found != channels.end() && found->number == number;
}

}  // namespace

Json transpondersToJson(const std::vector<Transponder>& transponders) {
    Json document = Json::array();
    for (const Transponder& transponder : transponders) {
        document.push_back({{"system", transponder.system},
                            {"frequency", transponder.frequency},
                            {"parameters", transponder.parameters}});
    }
    return document;
}

Json channelsToJson(const std::vector<Channel>& channels) {
    Json document = Json::array();
    for (const Channel& channel : channels) {
        document.push_back({{"number", channel.number},
                            {"transponder", channel.transponder},
                            {"serviceId", channel.serviceId},
                            {"name", channel.name},
                            {"kind", channel.isRadio ? kRadio : kTv},
                            {"encrypted", channel.isEncrypted}});
    }
    return document;
}

Json hotelListToJson(const std::vector<HotelChannel>& hotelList) {
    Json document = Json::array();
    for (const HotelChannel& line : hotelList) {
        document.push_back({{"channel", line.channel}, {"name", line.name}});
    }
    return document;
}

std::vector<Transponder> transpondersIn(const Json& document, const std::string& where) {
    expectShortArray(document, where, kMostTransponders);
    std::vector<Transponder> transponders;
    for (const Json& value : document) {
        transponders.push_back(transponderIn(value, entryOf(where, transponders.size() + 1)));
    }
    return transponders;
}

std::vector<Channel> channelsIn(const Json& document, const std::string& where, std::size_t transponders) {
    expectShortArray(document, where, kMostChannels);
    std::vector<Channel> channels;
    std::set<std::pair<int, int>> services;
    for (const Json& value : document) {
        const std::string entry = entryOf(where, channels.size() + 1);
        Channel channel = channelIn(value, entry, transponders);
        if (!channels.empty() && channel.number <= channels.back().number) {
            throw WrongMember{within(entry, "number"), "is not above the one before"};
        }
        if (!services.emplace(channel.transponder, channel.serviceId).second) {
            throw WrongMember{within(entry, "serviceId"), "is on the transponder already"};
        }
        channels.push_back(std::move(channel));
    }
    return channels;
}

std::vector<HotelChannel> hotelListIn(const Json& document, const std::string& where,
                                      const std::vector<Channel>& channels) {
    expectShortArray(document, where, kMostHotelChannels);
    std::vector<HotelChannel> hotelList;
    for (const Json& value : document) {
        const std::string entry = entryOf(where, hotelList.size() + 1);
        expectOnly(value, entry, {"channel", "name"});
        HotelChannel line;
        line.channel = static_cast<int>(numberBetween(memberOf(value, entry, "channel"),
                                                      within(entry, "channel"), 1, kHighestChannelNumber));
        line.name = visibleText(memberOf(value, entry, "name"), within(entry, "name"), kLongestChannelName);
        if (!hasChannel(channels, line.channel)) {
            throw WrongMember{within(entry, "channel"), "is no channel of the map"};
        }
        hotelList.push_back(std::move(line));
    }
    return hotelList;
}

}  // namespace vxtv
