#pragma once

#include <deque>
#include <string>
#include <utility>

namespace vxtv {

/// Named strings, in the order in which they were added. A value stays where it is while others are added.
using PortEntries = std::deque<std::pair<std::string, std::string>>;

}  // namespace vxtv
