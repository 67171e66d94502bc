#pragma once

#include <fcntl.h>

#include "common/descriptor.h"

namespace vxclone {

using vxcommon::Descriptor;

/// How a folder is opened that somebody may exchange for a link.
inline constexpr int kOpenFolder = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;

}  // namespace vxclone
