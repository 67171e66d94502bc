#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace vxclone {

/// The years 1000 to 9999, because the text of a time has four digits for the year.
inline constexpr std::int64_t kEarliestTime = -30'610'224'000;
inline constexpr std::int64_t kLatestTime = 253'402'300'799;

/// Seconds since the epoch (negative before it) as ISO 8601 in UTC: "2026-11-21T05:10:50Z".
std::string timeText(std::int64_t seconds);
/// The time of the clock, limited to the range above. A clock may be wrong or jump back, so times are only
/// shown and decide nothing.
std::int64_t secondsNow();

/// This vxclone's version, as in "1.0.0".
std::string_view version();

}  // namespace vxclone
