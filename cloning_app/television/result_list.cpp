#include "cloning_app/television/result_list.h"

#include <optional>

namespace vxclone {

namespace {

constexpr std::string_view kSuccess = "-SUCCESS";
constexpr std::string_view kFail = "-FAIL";

std::optional<Outcome> parseLine(std::string_view line) {
    for (const auto& [ending, success] : {std::pair(kSuccess, true), std::pair(kFail, false)}) {
        if (line.size() < ending.size() || line.substr(line.size() - ending.size()) != ending) {
            continue;
        }
        const auto category = categoryNamed(line.substr(0, line.size() - ending.size()));
        if (category) {
            return Outcome{*category, success};
        }
    }
    return std::nullopt;
}

}  // namespace

std::vector<Outcome> ResultList::update(std::string_view reading) {
    std::map<std::string_view, int> counts;
    std::vector<Outcome> fresh;
    for (std::size_t end = reading.find('\n'); end != std::string_view::npos; end = reading.find('\n')) {
        const std::string_view line = reading.substr(0, end);
        reading.remove_prefix(end + 1);
        const int count = ++counts[line];
        int& seen = seen_[std::string(line)];
        if (count <= seen) {
            continue;
        }
        seen = count;
        if (const auto outcome = parseLine(line)) {
            fresh.push_back(*outcome);
        } else {
            unknownLines_.emplace_back(line);
        }
    }
    outcomes_.insert(outcomes_.end(), fresh.begin(), fresh.end());
    return fresh;
}

}  // namespace vxclone
