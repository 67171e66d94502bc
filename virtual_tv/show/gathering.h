#pragma once

#include "virtual_tv/show/page.h"
#include "virtual_tv/television/television.h"

namespace vxtv::show {

/// How many channels a page shows when it is not asked for all.
inline constexpr std::size_t kFirstChannels = 20;

/// Reads all that is shown of the television, which may be in use meanwhile; changes nothing. A service that
/// it does not have is a section that says so. `mostChannels` limits the list of channels alone.
/// Errors: those of what is read.
Result<Page> gatherPage(const Television& television, std::size_t mostChannels);

}  // namespace vxtv::show
