#pragma once

#include <cstdint>

namespace vxtv {

/// Microseconds of the monotonic clock, which all processes of this machine share.
std::int64_t monotonicMicroseconds();

}  // namespace vxtv
