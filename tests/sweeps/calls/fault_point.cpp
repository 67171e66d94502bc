#include "fault_point.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <map>

#include "virtual_tv/calls/contract_calls.h"

namespace vxtest {

namespace {

/// Calls for which 0 means failure: those that return a bool, and those that return another number for
/// success.
constexpr std::array<std::string_view, 10> kZeroIsFailure = {
    "CCCategoryUtil::RemoveNavigation",
    "CHomeDataControlAPI::CopyCloneDataTVtoUSB",
    "CHomeDataControlAPI::CopyCloneDataUSBtoTV",
    "CSourceAPI::GetSourceList",
    "CSourceAPI::SetCustomIconPath",
    "IB2BControl::ExportChannelMap",
    "IUtil::ExportChannelMap",
    "IUtil::ImportChannelMap",
    "SettingsDataCloneAPI::BackupSettingsData",
    "SettingsDataCloneAPI::RestoreSettingsData",
};

/// The calls for which a television needs applications, and those of them that decide about an exchange.
constexpr const char* kOfApplications[] = {"aul_", "bundle_", "message_port_"};
constexpr const char* kOfAnExchange[] = {"aul_launch_app", "bundle_get_str",
                                         "message_port_register_local_port",
                                         "message_port_send_message_with_local_port"};

template <class Starts>
bool beginsWithAny(const std::string& text, const Starts& starts) {
    return std::any_of(std::begin(starts), std::end(starts),
                       [&](const char* start) { return beginsWith(text, start); });
}

bool zeroIsFailure(const std::string& call) {
    return std::find(kZeroIsFailure.begin(), kZeroIsFailure.end(), call) != kZeroIsFailure.end();
}

bool canFail(const std::string& call) {
    const auto known = vxtv::findCall(call);
    return !known || known->kind != vxtv::CallKind::NeverFails;
}

}  // namespace

FaultPoint faultPoint(const std::string& call, int nth, bool fromThenOn) {
    return {call, nth, fromThenOn, canFail(call)};
}

std::string FaultPoint::name() const {
    return call + " " + std::to_string(nth) + (fromThenOn ? " and later" : "");
}

std::vector<std::string> FaultPoint::arguments() const {
    std::vector<std::string> words = {"add", call, "--nth", std::to_string(nth)};
    words.insert(words.end(),
                 canFail ? std::initializer_list<std::string>{"--status", zeroIsFailure(call) ? "0" : "-1"}
                         : std::initializer_list<std::string>{"--delay", "20"});
    if (fromThenOn) {
        words.emplace_back("--from-then-on");
    }
    return words;
}

std::vector<FaultPoint> faultPoints(const std::vector<std::string>& calls, bool all, bool withApplications) {
    // In the short form every third operation, by their first calls.
    const std::size_t step = all || withApplications ? 1 : 3;
    std::map<std::string, int> count;
    std::vector<FaultPoint> points;
    for (const std::string& call : calls) {
        const int nth = ++count[call];
        if (all || (nth == 1 && count.size() % step == 0)) {
            points.push_back(faultPoint(call, nth, false));
        }
    }
    for (const auto& [call, last] : count) {
        if (all) {
            points.push_back(faultPoint(call, 1, true));
        } else if (last > 1 && beginsWith(call, "vconf_")) {
            points.push_back(faultPoint(call, last, false));
        }
    }
    std::erase_if(points, [&](const FaultPoint& point) {
        const bool isTried =
            all ? beginsWithAny(point.call, kOfApplications) : beginsWithAny(point.call, kOfAnExchange);
        return withApplications && !isTried;
    });
    return points;
}

}  // namespace vxtest
