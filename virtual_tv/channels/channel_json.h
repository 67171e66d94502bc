#pragma once

#include <nlohmann/json.hpp>
#include <set>
#include <string>
#include <vector>

#include "virtual_tv/channels/channel_map.h"

namespace vxtv {

// The channel map as JSON documents: those of the channel archive and of `vxtv channels --json`, described in
// docs/service-backups.md. Reading is strict and throws WrongMember.

nlohmann::json transpondersToJson(const std::vector<Transponder>& transponders);
nlohmann::json channelsToJson(const std::vector<Channel>& channels);
nlohmann::json hotelListToJson(const std::vector<HotelChannel>& hotelList);

std::vector<Transponder> transpondersIn(const nlohmann::json& document, const std::string& where);

/// Channels on that number of transponders, sorted by number.
std::vector<Channel> channelsIn(const nlohmann::json& document, const std::string& where,
                                std::size_t transponders);

/// Lines that refer to these channels.
std::vector<HotelChannel> hotelListIn(const nlohmann::json& document, const std::string& where,
                                      const std::vector<Channel>& channels);

}  // namespace vxtv
