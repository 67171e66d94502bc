#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace vxclone {

/// The years 1000 to 9999, which is what a time's text has room for.
inline constexpr std::int64_t kEarliestTime = -30'610'224'000;
inline constexpr std::int64_t kLatestTime = 253'402'300'799;

/// Seconds since the epoch, before it below zero, as ISO 8601 in UTC: "2026-11-21T05:10:50Z".
std::string timeText(std::int64_t seconds);
/// What the clock says, or the nearest of the times above. A clock may be wrong, and may jump back: a time is
/// shown, and nothing is decided by it.
std::int64_t secondsNow();

/// This vxclone's version, as in "1.0.0".
std::string_view version();

}  // namespace vxclone
