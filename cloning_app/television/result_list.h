#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "cloning_app/television/category.h"

namespace vxclone {

/// One outcome that the library reported.
struct Outcome {
    VXClone category;
    bool success;
};

/// The library's growing result list, read again and again. The library appends without a lock, so that a
/// later reading may lack a line of an earlier one: what was seen once stays.
class ResultList {
 public:
    /// Takes one reading of the whole list. Result: the outcomes that it brings. A last line without its line
    /// end is not there yet.
    std::vector<Outcome> update(std::string_view reading);

    /// Everything seen, in the order of its appearance.
    const std::vector<Outcome>& outcomes() const { return outcomes_; }
    /// Lines that are no outcome of any category.
    const std::vector<std::string>& unknownLines() const { return unknownLines_; }

 private:
    std::map<std::string, int, std::less<>> seen_;
    std::vector<Outcome> outcomes_;
    std::vector<std::string> unknownLines_;
};

}  // namespace vxclone
