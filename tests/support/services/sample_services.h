#pragma once

#include <nlohmann/json.hpp>
#include <string>

#include "virtual_tv/factory/profile.h"
#include "virtual_tv/services/value_services.h"

namespace vxtest {

/// Documents with all values at their lowest, or all at their highest.
enum class Sample { Lowest, Highest };

inline nlohmann::json sampleOf(const vxtv::ValueRule& rule, Sample sample) {
    const bool highest = sample == Sample::Highest;
    switch (rule.kind) {
        case vxtv::ValueRule::Kind::Number:
            return highest ? rule.highest : rule.lowest;
        case vxtv::ValueRule::Kind::OnOff:
            return highest;
        case vxtv::ValueRule::Kind::Text:
            return highest ? std::string(static_cast<std::size_t>(rule.highest), 'z')
                           : std::string(static_cast<std::size_t>(rule.lowest), 'a');
        case vxtv::ValueRule::Kind::OneOf:
            break;
    }
    return highest ? rule.choices.back() : rule.choices.front();
}

inline nlohmann::json sampleOf(const vxtv::ValueShape& shape, Sample sample) {
    const auto fill = [sample](nlohmann::json& document, const std::vector<vxtv::ValueRule>& rules) {
        for (const vxtv::ValueRule& rule : rules) {
            document[nlohmann::json::json_pointer("/" + rule.name)] = sampleOf(rule, sample);
        }
    };
    nlohmann::json document = nlohmann::json::object();
    fill(document, shape.values);
    for (const vxtv::ListRule& list : shape.lists) {
        nlohmann::json entry = nlohmann::json::object();
        fill(entry, list.fields);
        document[list.name] = nlohmann::json::array({entry});
    }
    return document;
}

/// The source that accepts icons; its icon type is 0.
inline constexpr int kSampleSource = 10;

/// Gives the profile the services of values, the network time and the sources.
inline void addSampleServices(vxtv::Profile& profile, Sample sample) {
    for (const vxtv::ValueService& service :
         {vxtv::factoryService(), vxtv::avService(), vxtv::settingsService(), vxtv::homeDataService(),
          vxtv::webApplicationService()}) {
        profile.services[std::string(service.name)] = sampleOf(service.shape, sample);
    }
    profile.services["network-time"] =
        nlohmann::json::parse(R"({"supported": true, "on": false, "timezone": 29, "server": "ntp.example"})");
    profile.services["sources"] = nlohmann::json::parse(R"([
        {"key": 1, "id": 10, "name": "Box", "iconType": 0, "icons": null},
        {"key": 0, "id": 1, "name": "TV", "iconType": 1, "icons": null},
        {"key": 1, "id": 11, "name": "HDMI 2", "iconType": 2, "icons": null}])");
    profile.features.push_back({"com.kestrel/featureconf/network.network_support", 1});
}

/// The first bytes of a picture, enough to be recognised as one.
inline const std::string kPngBytes = "\x89PNG\r\n\x1a\nrest";

}  // namespace vxtest
