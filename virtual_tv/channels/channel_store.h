#pragma once

#include <SQLiteCpp/SQLiteCpp.h>

#include <vector>

#include "virtual_tv/channels/channel_map.h"
#include "virtual_tv/store/data_service.h"
#include "virtual_tv/store/database.h"

namespace vxtv {

/// The service of transponders, channels, the hotel's channel list and the navigation lists.
extern const DataService kChannelService;

/// The channels of a television.
///
/// Errors common to all: UnknownService when the television has no channels, and those of `Database`. Threads
/// and processes: any.
class ChannelStore {
 public:
    explicit ChannelStore(Database& database) : database_(database) {}

    Result<ChannelMap> map() const;
    Result<std::vector<HotelChannel>> hotelList() const;

    /// Replaces map and hotel list in one step, and marks the navigation lists that are out of date because
    /// of this.
    Result<void> replace(const ChannelMap& map, const std::vector<HotelChannel>& hotelList);

 private:
    Database& database_;
};

}  // namespace vxtv
