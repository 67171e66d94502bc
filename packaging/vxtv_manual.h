#pragma once

#include "packaging/pages.h"

namespace vxpages {

/// The manual of vxtv.
Manual vxtvManual();

}  // namespace vxpages
