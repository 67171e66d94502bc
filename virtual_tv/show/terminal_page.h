#pragma once

#include "virtual_tv/show/page.h"

namespace vxtv::show {

/// The page as text for the screen. Nothing in it controls the terminal.
vxcommon::Printable terminalPage(const Page& page, const vxcommon::Screen& screen);

}  // namespace vxtv::show
