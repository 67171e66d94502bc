#pragma once

#include <initializer_list>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "virtual_tv/store/data_service.h"

namespace vxtv {

/// How a value of a service travels.
enum class Part {
    Carried,  ///< a clone carries it
    Early,    ///< the same, and it is restored before the others
    Kept,     ///< it stays with the television
};

/// What a single value may be.
struct ValueRule {
    enum class Kind { Number, OnOff, OneOf, Text };
    std::string name;  ///< the path to it in the service's document: "picture/movie/backlight"
    Kind kind = Kind::Number;
    int lowest = 0;  ///< the number, or the bytes of the text
    int highest = 0;
    std::vector<std::string_view> choices = {};
    Part part = Part::Carried;
};

ValueRule numberFrom(std::string_view name, int lowest, int highest);
ValueRule onOff(std::string_view name);
ValueRule oneOf(std::string_view name, std::vector<std::string_view> choices);
/// Without control characters.
ValueRule textOf(std::string_view name, int shortest, int longest);
/// The rule for a value that travels in another way.
ValueRule as(Part part, ValueRule rule);
/// The rules, each below each of the paths.
std::vector<ValueRule> below(std::initializer_list<std::string_view> paths,
                             const std::vector<ValueRule>& rules);

/// A list of entries that are all alike, each with a text of its own by which it is known. A clone carries
/// the list as a whole.
struct ListRule {
    std::string name;  ///< its member of the service's document, an array of objects
    std::string key;   ///< the field by which an entry is known
    bool isOrdered = false;
    std::size_t most = 0;
    std::vector<ValueRule> fields;
};

/// What the document of a service holds, no more and no less.
struct ValueShape {
    std::vector<ValueRule> values;
    std::vector<ListRule> lists = {};
};

using Parts = std::initializer_list<Part>;
inline constexpr Parts kAllParts = {Part::Carried, Part::Early, Part::Kept};
inline constexpr Parts kTravellingParts = {Part::Carried, Part::Early};

/// Nothing when the document holds exactly the values of the parts, each as its rule wants it; throws
/// WrongMember otherwise. `where` is the path to the document.
void expectShape(const nlohmann::json& document, const std::string& where, const ValueShape& shape,
                 Parts parts);

/// The values of these parts alone. Before: the document has the shape, perhaps in more parts.
nlohmann::json partsOf(const nlohmann::json& document, const ValueShape& shape, Parts parts);

/// The values of these parts by their names. An entry of a list goes by its key; in one whose order counts it
/// has a "position", from 1 on. Before: as for `partsOf`.
Texts textsIn(const nlohmann::json& document, const ValueShape& shape, Parts parts);

}  // namespace vxtv
