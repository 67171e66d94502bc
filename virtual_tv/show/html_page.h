#pragma once

#include <string>

#include "virtual_tv/show/page.h"

namespace vxtv::show {

/// The page as one HTML document that needs nothing else: no network, no script. `madeAt` is for its last
/// line.
std::string htmlPage(const Page& page, const std::string& madeAt);

}  // namespace vxtv::show
