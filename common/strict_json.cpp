#include "common/strict_json.h"

#include <set>
#include <vector>

namespace vxcommon {

namespace {

using Json = nlohmann::json;
using Event = Json::parse_event_t;

constexpr const char* kTheWhole = "the whole";

/// Watches the parser. What it finds leaves the parsing as an exception, which has no other way out.
class Watch {
 public:
    explicit Watch(const JsonLimits& limits) : limits_(limits) {}

    bool see(int depth, Event event, const Json& parsed) {
        const bool starts = event == Event::object_start || event == Event::array_start;
        const bool ends = event == Event::object_end || event == Event::array_end;
        values_ += ends ? 0 : 1;
        if (starts && depth >= limits_.depth) {
            throw WrongMember{kTheWhole, "has more than " + std::to_string(limits_.depth) + " layers"};
        }
        if (values_ > limits_.values) {
            throw WrongMember{kTheWhole,
                              "has more than " + std::to_string(limits_.values) + " names and values"};
        }
        seeName(event, parsed);
        return true;
    }

 private:
    void seeName(Event event, const Json& parsed) {
        if (event == Event::object_start) {
            names_.emplace_back();
        } else if (event == Event::object_end) {
            names_.pop_back();
        } else if (event == Event::key && !names_.back().insert(parsed.get<std::string>()).second) {
            throw WrongMember{parsed.get<std::string>(), "is given twice"};
        }
    }

    const JsonLimits& limits_;
    std::size_t values_ = 0;
    std::vector<std::set<std::string>> names_;
};

}  // namespace

Json parseStrictly(std::string_view text, const JsonLimits& limits) {
    // The parser takes a NUL for the end, and tells of a number without a place in another way than of the
    // rest.
    if (text.find('\0') != std::string_view::npos) {
        throw WrongMember{kTheWhole, "holds a NUL"};
    }
    Watch watch(limits);
    try {
        return Json::parse(
            text, [&watch](int depth, Event event, Json& parsed) { return watch.see(depth, event, parsed); });
    } catch (const Json::out_of_range&) {
        throw WrongMember{kTheWhole, "holds a number that is too large"};
    }
}

}  // namespace vxcommon
