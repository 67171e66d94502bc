#pragma once

#include <cerrno>
#include <string>
#include <system_error>

#include "common/descriptor.h"

namespace vxtv {

using vxcommon::Descriptor;

/// The system's text for an error number.
inline std::string reason(int error = errno) {
    return std::generic_category().message(error);
}

}  // namespace vxtv
