#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "virtual_tv/show/page.h"
#include "virtual_tv/store/data_service.h"

namespace vxtv::show {

/// The fact, with a value that can be seen when it is empty.
Fact factOf(std::string name, std::string value, Colour colour = Colour::Plain);

/// A table of names that are pairs, "item/field": a row for each item, or for each field when there are many
/// of these. A pair that is not there is an empty cell.
Grid gridOf(const Texts& pairs);

/// Values with paths for names, a card for what the first word has in common: "region/code" is a fact,
/// "sound/usb/bass" the cell of a table. Strings lose the quotation marks that they have in JSON.
std::vector<Card> cardsOf(const Texts& values, Colour colour = Colour::Plain);

}  // namespace vxtv::show
