#include "cloning_app/base/stamp.h"

#include <algorithm>
#include <ctime>

namespace vxclone {

std::string timeText(std::int64_t seconds) {
    const auto time = static_cast<std::time_t>(seconds);
    std::tm parts{};
    gmtime_r(&time, &parts);
    char text[sizeof "2026-11-21T05:10:50Z -2147481748"];
    const std::size_t size = std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%SZ", &parts);
    return {text, size};
}

std::int64_t secondsNow() {
    return std::clamp<std::int64_t>(std::time(nullptr), kEarliestTime, kLatestTime);
}

std::string_view version() {
    return VXCLONE_VERSION;
}

}  // namespace vxclone
