#pragma once

#include <initializer_list>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "virtual_tv/store/data_service.h"

namespace vxtv {

/// How a value of a service is cloned.
enum class Part {
    Carried,  ///< it is cloned
    Early,    ///< it is cloned, and restored before the others
    Kept,     ///< it is not cloned
};

/// The rule for a single value.
struct ValueRule {
    enum class Kind { Number, OnOff, OneOf, Text };
    std::string name;  ///< the path to it in the service's document: "picture/movie/backlight"
    Kind kind = Kind::Number;
    int lowest = 0;  ///< of the number, or of the length of the text in bytes
    int highest = 0;
    std::vector<std::string_view> choices = {};
    Part part = Part::Carried;
};

ValueRule numberFrom(std::string_view name, int lowest, int highest);
ValueRule onOff(std::string_view name);
ValueRule oneOf(std::string_view name, std::vector<std::string_view> choices);
/// A text without control characters.
ValueRule textOf(std::string_view name, int shortest, int longest);
/// The rule for a value that is cloned in another way.
ValueRule as(Part part, ValueRule rule);
/// The rules, repeated for each of the paths.
std::vector<ValueRule> below(std::initializer_list<std::string_view> paths,
                             const std::vector<ValueRule>& rules);

/// A list of similar entries, each identified by a text. A clone copies the list as a whole.
struct ListRule {
    std::string name;  ///< its member of the service's document, an array of objects
    std::string key;   ///< the field that identifies an entry
    bool isOrdered = false;
    std::size_t most = 0;
    std::vector<ValueRule> fields;
};

/// The exact content of a service's document.
struct ValueShape {
    std::vector<ValueRule> values;
    std::vector<ListRule> lists = {};
};

using Parts = std::initializer_list<Part>;
inline constexpr Parts kAllParts = {Part::Carried, Part::Early, Part::Kept};
inline constexpr Parts kTravellingParts = {Part::Carried, Part::Early};

/// Succeeds if the document holds exactly the values of the parts, and each matches its rule; otherwise
/// throws WrongMember. `where` is the path to the document.
void expectShape(const nlohmann::json& document, const std::string& where, const ValueShape& shape,
                 Parts parts);

/// Only the values of these parts. Before: the document has the shape, possibly with more parts.
nlohmann::json partsOf(const nlohmann::json& document, const ValueShape& shape, Parts parts);

/// The values of these parts by their names. An entry of a list is named by its key. If the order of the list
/// counts, the entry has a "position", from 1. Before: as for `partsOf`.
Texts textsIn(const nlohmann::json& document, const ValueShape& shape, Parts parts);

}  // namespace vxtv
