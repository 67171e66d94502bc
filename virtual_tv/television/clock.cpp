#include "virtual_tv/television/clock.h"

#include <chrono>

namespace vxtv {

std::int64_t monotonicMicroseconds() {
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::microseconds>(now).count();
}

}  // namespace vxtv
