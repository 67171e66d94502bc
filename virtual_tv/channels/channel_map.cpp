#include "virtual_tv/channels/channel_map.h"

#include <fmt/format.h>

#include <array>
#include <cstdint>
#include <string_view>

namespace vxtv {

namespace {

constexpr std::array<std::string_view, 32> kFirstWords = {
    "Amber",  "Anchor", "Arrow",   "Beacon", "Birch",   "Bridge", "Cedar",  "Compass",
    "Coral",  "Crown",  "Delta",   "Ember",  "Falcon",  "Fjord",  "Garden", "Harbour",
    "Hazel",  "Ivory",  "Juniper", "Lagoon", "Lantern", "Linden", "Maple",  "Meadow",
    "Orchid", "Pearl",  "Quartz",  "River",  "Sable",   "Summit", "Tulip",  "Willow"};
constexpr std::array<std::string_view, 32> kSecondWords = {
    "One",    "Two",     "Three", "Arts",    "Business", "Cinema",  "City",   "Classic",
    "Comedy", "Cooking", "Crime", "Drama",   "Family",   "Fashion", "Games",  "Gold",
    "Health", "History", "Home",  "Info",    "Junior",   "Kids",    "Life",   "Live",
    "Motor",  "Nature",  "News",  "Science", "Series",   "Sport",   "Travel", "World"};
constexpr std::uint64_t kNames = kFirstWords.size() * kSecondWords.size();

constexpr int kRadioEvery = 5;
constexpr std::int64_t kEncryptedEvery = 4;
constexpr std::int64_t kFirstServiceId = 257;

/// A number that depends on the transponders, so that two towns have different names.
std::uint64_t seedOf(const std::vector<Transponder>& transponders) {
    // The FNV-1a hash over integers. Its upper half is mixed best.
    std::uint64_t hash = 0xcbf29ce484222325U;
    for (const Transponder& transponder : transponders) {
        hash = (hash ^ static_cast<std::uint64_t>(transponder.frequency)) * 0x100000001b3U;
    }
    return hash >> 32U;
}

std::string nameOf(std::uint64_t index, std::uint64_t seed) {
    // Odd, so that the first 1,024 channels use every name once.
    constexpr std::uint64_t kStep = 397;
    const std::uint64_t place = (index * kStep + seed % kNames) % kNames;
    std::string name = fmt::format("{} {}", kFirstWords.at(place / kSecondWords.size()),
                                   kSecondWords.at(place % kSecondWords.size()));
    return index < kNames ? name : fmt::format("{} {}", name, index / kNames + 1);
}

}  // namespace

std::vector<Channel> makeChannels(const std::vector<Transponder>& transponders, int servicesPerTransponder) {
    const std::uint64_t seed = seedOf(transponders);
    std::vector<Channel> channels;
    for (std::size_t place = 0; place < transponders.size(); ++place) {
        const std::int64_t frequency = transponders[place].frequency;
        for (int service = 0; service < servicesPerTransponder; ++service) {
            Channel channel;
            channel.number = static_cast<int>(channels.size()) + 1;
            channel.transponder = static_cast<int>(place) + 1;
            channel.serviceId = static_cast<int>(
                kFirstServiceId + static_cast<std::int64_t>(place) * kMostServicesPerTransponder + service);
            channel.isRadio = service % kRadioEvery == kRadioEvery - 1;
            channel.isEncrypted = (frequency / 1000 + service) % kEncryptedEvery == 0;
            channel.name = (channel.isRadio ? "Radio " : "") + nameOf(channels.size(), seed);
            channels.push_back(std::move(channel));
        }
    }
    return channels;
}

}  // namespace vxtv
