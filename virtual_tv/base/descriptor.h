#pragma once

#include <cerrno>
#include <string>
#include <system_error>

#include "common/descriptor.h"

namespace vxtv {

using vxcommon::Descriptor;

/// What the system says about an error number, in words.
inline std::string reason(int error = errno) {
    return std::generic_category().message(error);
}

}  // namespace vxtv
