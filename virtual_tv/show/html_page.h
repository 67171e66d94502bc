#pragma once

#include <string>

#include "virtual_tv/show/page.h"

namespace vxtv::show {

/// The page as one HTML document without scripts and without references to other files. `madeAt` is for its
/// last line.
std::string htmlPage(const Page& page, const std::string& madeAt);

}  // namespace vxtv::show
