#pragma once

#include <string>

#include "virtual_tv/show/page.h"

namespace vxtv::show {

/// The page as text for a terminal, where nothing in it steers the terminal; colours only where `coloured`.
std::string terminalPage(const Page& page, bool coloured);

}  // namespace vxtv::show
