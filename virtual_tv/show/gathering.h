#pragma once

#include "virtual_tv/show/page.h"
#include "virtual_tv/television/television.h"

namespace vxtv::show {

/// The number of channels on a page by default.
inline constexpr std::size_t kFirstChannels = 20;

/// Reads everything that a page shows of the television, which may be in use meanwhile. Changes nothing. A
/// service that it does not have becomes a section that says so. `mostChannels` limits only the list of
/// channels. Errors: those of the parts.
Result<Page> gatherPage(const Television& television, std::size_t mostChannels);

}  // namespace vxtv::show
