#pragma once

#include "packaging/pages.h"

namespace vxpages {

/// The manual of vxclone: its command line, and the catalogue of its errors.
Manual vxcloneManual();

}  // namespace vxpages
