#pragma once

#include <string>
#include <vector>

#include "virtual_tv/show/markup.h"
#include "virtual_tv/show/page.h"

namespace vxtv::show {

// The pieces of the HTML page.

/// The picture itself. Before: it has bytes.
Markup imageOf(const Picture& picture, const std::string& whatItShows);
/// Nothing for no facts.
Markup factList(const std::vector<Fact>& facts);
Markup cardOf(const Card& card);

}  // namespace vxtv::show
