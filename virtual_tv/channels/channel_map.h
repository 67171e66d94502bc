#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "virtual_tv/channels/dvb_table.h"

namespace vxtv {

/// A television or radio service that the television can show.
struct Channel {
    int number = 0;       ///< the unique number that a guest types
    int transponder = 0;  ///< its position among the transponders, from 1
    int serviceId = 0;    ///< unique on the transponder
    std::string name;
    bool isRadio = false;
    bool isEncrypted = false;
};

/// A line of the hotel's own channel list.
struct HotelChannel {
    int channel = 0;   ///< the channel's number
    std::string name;  ///< the hotel's name for it
};

struct ChannelMap {
    std::vector<Transponder> transponders;
    std::vector<Channel> channels;  ///< sorted by number
};

inline constexpr std::size_t kMostChannels = 10'000;
inline constexpr int kHighestChannelNumber = 99'999;
inline constexpr int kHighestServiceId = 65'535;
inline constexpr std::size_t kLongestChannelName = 128;
inline constexpr std::size_t kMostHotelChannels = 1000;
inline constexpr int kMostServicesPerTransponder = 64;

/// Makes the channels on the transponders. Scan tables hold only transponders, so the services are invented,
/// always the same for the same transponders: every fifth is radio, about every fourth is encrypted, and each
/// has its own name. Before: at most `kMostServicesPerTransponder` services.
std::vector<Channel> makeChannels(const std::vector<Transponder>& transponders, int servicesPerTransponder);

}  // namespace vxtv
