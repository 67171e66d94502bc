#include "virtual_tv/television/strict_json.h"

#include <fmt/format.h>

#include <set>
#include <string>
#include <vector>

#include "virtual_tv/television/profile_reading.h"

namespace vxtv {

using Json = nlohmann::json;

Json parseStrictly(std::string_view text, int deepest) {
    using Event = Json::parse_event_t;
    std::vector<std::set<std::string>> seen;
    const Json::parser_callback_t refuse = [&seen, deepest](int depth, Event event, Json& parsed) {
        const bool starts = event == Event::object_start || event == Event::array_start;
        if (starts && depth >= deepest) {
            throw WrongMember{"the whole", fmt::format("has more than {} layers", deepest)};
        }
        if (event == Event::object_start) {
            seen.emplace_back();
        } else if (event == Event::object_end) {
            seen.pop_back();
        } else if (event == Event::key && !seen.back().insert(parsed.get<std::string>()).second) {
            throw WrongMember{parsed.get<std::string>(), "is given twice"};
        }
        return true;
    };
    return Json::parse(text, refuse);
}

}  // namespace vxtv
