#include "virtual_tv/ports/port.h"

#include <algorithm>

namespace vxtv {

namespace {

constexpr std::string_view kPrefix = "vxtv.";
constexpr std::size_t kLongestBusName = 255;

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

bool isAllowed(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || isDigit(c) || c == '-' || c == '_';
}

bool isPart(std::string_view part) {
    return !part.empty() && !isDigit(part.front()) && std::all_of(part.begin(), part.end(), isAllowed);
}

bool isMadeOfParts(std::string_view text) {
    for (auto dot = text.find('.'); dot != std::string_view::npos; dot = text.find('.')) {
        if (!isPart(text.substr(0, dot))) return false;
        text.remove_prefix(dot + 1);
    }
    return isPart(text);
}

}  // namespace

PortResult<std::string> portBusName(std::string_view application, std::string_view port) {
    if (kPrefix.size() + application.size() + 1 + port.size() > kLongestBusName) {
        return tl::make_unexpected(PortError::NameTooLong);
    }
    // A port has no dot, so the last dot separates application and port, and every port has a different bus
    // name.
    if (!isMadeOfParts(application) || !isPart(port)) return tl::make_unexpected(PortError::BadArgument);
    return std::string(kPrefix).append(application).append(".").append(port);
}

}  // namespace vxtv
