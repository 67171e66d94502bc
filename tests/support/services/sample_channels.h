#pragma once

#include <nlohmann/json.hpp>

#include "virtual_tv/factory/profile.h"

namespace vxtest {

/// Gives the profile channels, a hotel list, navigation lists and timers, few of each.
inline void addSampleChannels(vxtv::Profile& profile) {
    profile.services["channels"] = nlohmann::json::parse(R"({
        "tables": ["dvb-t/de-Berlin"], "servicesPerTransponder": 2,
        "hotelList": [{"channel": 5, "name": "House"}, {"channel": 2, "name": "News"}],
        "navigation": [
            {"mode": 5, "id": 1, "names": ["All"], "order": 0, "flag": 0,
             "places": [{"antenna": 0, "service": 3}]},
            {"mode": 10, "id": 2, "names": ["Favourites", "House"], "order": 1, "flag": 255,
             "places": [{"antenna": 0, "service": 3}, {"antenna": 1, "service": 3},
                        {"antenna": 2, "service": 16}, {"antenna": -1, "service": 3},
                        {"antenna": -1, "service": 16}, {"antenna": -1, "service": 19},
                        {"antenna": -1, "service": 20}]},
            {"mode": 11, "id": 3, "names": ["Children"], "order": 2, "flag": 0,
             "places": [{"antenna": 1, "service": 3}]}]})");
    profile.services["timers"] = nlohmann::json::parse(R"([
        {"id": 1, "kind": "recording", "start": "2027-01-05T20:15", "minutes": 90, "repeat": "weekly",
         "channel": 5, "title": "News"},
        {"id": 4, "kind": "wake-up", "start": "2027-01-06T06:45", "minutes": 10, "repeat": "weekdays",
         "channel": 0, "title": "Early"}])");
}

}  // namespace vxtest
