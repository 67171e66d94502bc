#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "virtual_tv/show/page.h"
#include "virtual_tv/store/data_service.h"

namespace vxtv::show {

/// The fact, with a visible value even if that is empty.
Fact factOf(std::string name, std::string value, Colour colour = Colour::Plain);

/// A table for names of the form "item/field": a row for each item, or for each field if there are many of
/// these. A missing pair becomes an empty cell.
Grid gridOf(const Texts& pairs);

/// Values whose names are paths, with a card for each first word: "region/code" becomes a fact,
/// "sound/usb/bass" a cell of a table. Strings lose their JSON quotation marks.
std::vector<Card> cardsOf(const Texts& values, Colour colour = Colour::Plain);

}  // namespace vxtv::show
