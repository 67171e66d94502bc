#include "cloning_app/package/strict_json.h"

#include <set>
#include <vector>

namespace vxclone {

namespace {

using Json = nlohmann::json;
using Event = Json::parse_event_t;

/// Watches the parser. What it finds leaves the parsing as an exception, which has no other way out.
class Watch {
 public:
    explicit Watch(const JsonLimits& limits) : limits_(limits) {}

    bool see(int depth, Event event, const Json& parsed) {
        const bool starts = event == Event::object_start || event == Event::array_start;
        const bool ends = event == Event::object_end || event == Event::array_end;
        values_ += ends ? 0 : 1;
        if (values_ > limits_.values || (starts && depth >= limits_.depth)) {
            throw std::string("holds more than it can need");
        }
        if (event == Event::object_start) {
            names_.emplace_back();
        } else if (event == Event::object_end) {
            names_.pop_back();
        } else if (event == Event::key && !names_.back().insert(parsed.get<std::string>()).second) {
            throw std::string("has two members of one name");
        }
        return true;
    }

 private:
    const JsonLimits& limits_;
    std::size_t values_ = 0;
    std::vector<std::set<std::string>> names_;
};

}  // namespace

tl::expected<Json, std::string> parseStrictly(std::string_view text, const JsonLimits& limits) {
    Watch watch(limits);
    try {
        return Json::parse(
            text, [&watch](int depth, Event event, Json& parsed) { return watch.see(depth, event, parsed); });
    } catch (const std::string& why) {
        return tl::make_unexpected(why);
    } catch (const Json::exception&) {
        return tl::make_unexpected(std::string("is no JSON"));
    }
}

}  // namespace vxclone
