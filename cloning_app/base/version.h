#pragma once

#include <string_view>

namespace vxclone {

/// This vxclone's version, as in "1.0.0".
std::string_view version();

}  // namespace vxclone
