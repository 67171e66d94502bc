// Channels that are made from transponders, and channels as JSON.

#include "virtual_tv/channels/channel_map.h"

#include <gtest/gtest.h>

#include <functional>
#include <set>
#include <utility>

#include "virtual_tv/base/json_reading.h"
#include "virtual_tv/channels/channel_json.h"

namespace vxtv {
namespace {

using Json = nlohmann::json;

std::vector<Transponder> town(std::int64_t first, int count) {
    std::vector<Transponder> transponders;
    for (int i = 0; i < count; ++i) {
        transponders.push_back(
            {"DVBC/ANNEX_A", first + std::int64_t{i} * 8'000'000, {{"MODULATION", "QAM/64"}}});
    }
    return transponders;
}

TEST(ChannelMaking, sameTranspondersGiveTheSameChannels) {
    const auto transponders = town(113'000'000, 20);
    EXPECT_EQ(channelsToJson(makeChannels(transponders, 12)), channelsToJson(makeChannels(transponders, 12)));
}

TEST(ChannelMaking, otherTranspondersGiveOtherNames) {
    EXPECT_NE(makeChannels(town(113'000'000, 20), 12)[0].name,
              makeChannels(town(121'000'000, 20), 12)[0].name);
}

TEST(ChannelMaking, numbersRiseAndNamesAndServicesAreOfOneChannelAlone) {
    const auto channels = makeChannels(town(113'000'000, 100), 20);
    ASSERT_EQ(channels.size(), 2000U);
    std::set<std::string> names;
    std::set<std::pair<int, int>> services;
    int radios = 0;
    int encrypted = 0;
    for (std::size_t i = 0; i < channels.size(); ++i) {
        EXPECT_EQ(channels[i].number, static_cast<int>(i) + 1);
        names.insert(channels[i].name);
        services.emplace(channels[i].transponder, channels[i].serviceId);
        radios += channels[i].isRadio ? 1 : 0;
        encrypted += channels[i].isEncrypted ? 1 : 0;
    }
    EXPECT_EQ(names.size(), channels.size());
    EXPECT_EQ(services.size(), channels.size());
    EXPECT_EQ(radios, 400);
    EXPECT_EQ(encrypted, 500);
}

TEST(ChannelMaking, asManyServicesAsThereMayBeStayWithinTheirRange) {
    const auto channels =
        makeChannels(town(1, static_cast<int>(kMostTransponders)), kMostServicesPerTransponder);
    EXPECT_LE(channels.back().serviceId, kHighestServiceId);
}

TEST(ChannelJson, documentsReadBackAsTheyWere) {
    const auto transponders = town(113'000'000, 3);
    const auto channels = makeChannels(transponders, 4);
    const std::vector<HotelChannel> hotelList = {{4, "House \"A\""}, {1, "Zürich"}, {4, "again"}};
    const Json first = transpondersToJson(transponders);
    const Json second = channelsToJson(channels);
    const Json third = hotelListToJson(hotelList);
    EXPECT_EQ(transpondersToJson(transpondersIn(first, "t")), first);
    EXPECT_EQ(channelsToJson(channelsIn(second, "c", transponders.size())), second);
    EXPECT_EQ(hotelListToJson(hotelListIn(third, "h", channels)), third);
}

/// Changes of a good document. Each must be refused.
using Damage = std::pair<const char*, std::function<void(Json&)>>;

template <class Read>
void expectEachRefused(const Json& good, const std::vector<Damage>& damages, Read read) {
    ASSERT_NO_THROW(read(good));
    for (const auto& [name, damage] : damages) {
        Json bad = good;
        damage(bad);
        EXPECT_THROW(read(bad), WrongMember) << name;
    }
}

TEST(ChannelJson, transpondersThatCannotBeAreRefused) {
    expectEachRefused(
        transpondersToJson(town(1000, 3)),
        {{"object", [](Json& it) { it = Json::object(); }},
         {"entry of another type", [](Json& it) { it[1] = 5; }},
         {"missing member", [](Json& it) { it[1].erase("system"); }},
         {"strange member", [](Json& it) { it[1]["more"] = 1; }},
         {"unknown system", [](Json& it) { it[1]["system"] = "DVBX"; }},
         {"no frequency", [](Json& it) { it[1]["frequency"] = 0; }},
         {"fraction", [](Json& it) { it[1]["frequency"] = 1.5; }},
         {"too high", [](Json& it) { it[1]["frequency"] = kHighestFrequency + 1; }},
         {"beyond a number", [](Json& it) { it[1]["frequency"] = 18446744073709551615U; }},
         {"parameter of another type", [](Json& it) { it[1]["parameters"]["MODULATION"] = 5; }},
         {"parameter with control", [](Json& it) { it[1]["parameters"]["MODULATION"] = "a\x1b"; }},
         {"parameter without name", [](Json& it) { it[1]["parameters"][""] = "a"; }},
         {"too many parameters",
          [](Json& it) {
              for (std::size_t i = 0; i <= kMostParameters; ++i) {
                  it[1]["parameters"]["P" + std::to_string(i)] = "1";
              }
          }},
         {"too many",
          [](Json& it) {
              while (it.size() <= kMostTransponders) {
                  it.push_back(it[0]);
              }
          }}},
        [](const Json& document) { transpondersIn(document, "t"); });
}

TEST(ChannelJson, channelsThatCannotBeAreRefused) {
    expectEachRefused(
        channelsToJson(makeChannels(town(1000, 3), 4)),
        {{"object", [](Json& it) { it = Json::object(); }},
         {"missing member", [](Json& it) { it[1].erase("kind"); }},
         {"strange member", [](Json& it) { it[1]["more"] = 1; }},
         {"number twice", [](Json& it) { it[1]["number"] = 1; }},
         {"number zero", [](Json& it) { it[0]["number"] = 0; }},
         {"number too high", [](Json& it) { it[11]["number"] = kHighestChannelNumber + 1; }},
         {"transponder that is none", [](Json& it) { it[1]["transponder"] = 4; }},
         {"transponder zero", [](Json& it) { it[1]["transponder"] = 0; }},
         {"service twice", [](Json& it) { it[1]["serviceId"] = it[0]["serviceId"]; }},
         {"service too high", [](Json& it) { it[1]["serviceId"] = kHighestServiceId + 1; }},
         {"empty name", [](Json& it) { it[1]["name"] = ""; }},
         {"long name", [](Json& it) { it[1]["name"] = std::string(kLongestChannelName + 1, 'x'); }},
         {"name with control", [](Json& it) { it[1]["name"] = "a\nb"; }},
         {"name with NUL", [](Json& it) { it[1]["name"] = std::string("a\0b", 3); }},
         {"kind", [](Json& it) { it[1]["kind"] = "TV"; }},
         {"encrypted as number", [](Json& it) { it[1]["encrypted"] = 1; }}},
        [](const Json& document) { channelsIn(document, "c", 3); });
}

TEST(ChannelJson, hotelLinesThatCannotBeAreRefused) {
    const auto channels = makeChannels(town(1000, 3), 4);
    expectEachRefused(hotelListToJson({{4, "a"}, {1, "b"}}),
                      {{"object", [](Json& it) { it = Json::object(); }},
                       {"unknown channel", [](Json& it) { it[1]["channel"] = 13; }},
                       {"channel zero", [](Json& it) { it[1]["channel"] = 0; }},
                       {"empty name", [](Json& it) { it[1]["name"] = ""; }},
                       {"strange member", [](Json& it) { it[1]["x"] = 1; }},
                       {"too many",
                        [](Json& it) {
                            while (it.size() <= kMostHotelChannels) {
                                it.push_back(it[0]);
                            }
                        }}},
                      [&](const Json& document) { hotelListIn(document, "h", channels); });
}

}  // namespace
}  // namespace vxtv
