#pragma once

#include <string>

#include "virtual_tv/show/page.h"

namespace vxtv::show {

/// The page as text for the screen, where nothing in it steers a terminal.
std::string terminalPage(const Page& page, const vxcommon::Screen& screen);

}  // namespace vxtv::show
