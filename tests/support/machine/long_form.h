#pragma once

#include <cstdlib>
#include <string_view>

namespace vxtest {

/// Whether every point and every case is to be tried, or a choice of them: the variable VX_SWEEP is "long",
/// which scripts/sweep and scripts/hostile set.
inline bool isLongForm() {
    const char* const form = std::getenv("VX_SWEEP");
    return form != nullptr && std::string_view(form) == "long";
}

}  // namespace vxtest
