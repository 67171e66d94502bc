#include "virtual_tv/session/stick.h"

#include <fmt/core.h>
#include <limits.h>
#include <unistd.h>

#include <algorithm>
#include <system_error>
#include <utility>

namespace vxtv {

namespace {

constexpr const char* kUnnamed = "usb";

std::pair<std::string, std::string> splitName(std::string_view text) {
    const auto colon = text.rfind(':');
    if (colon == std::string_view::npos || text.find('/', colon) != std::string_view::npos) {
        return {std::string(text), kUnnamed};
    }
    return {std::string(text.substr(0, colon)), std::string(text.substr(colon + 1))};
}

bool isPlainName(const std::string& name) {
    const auto isControl = [](unsigned char c) { return c < ' ' || c == 0x7f; };
    return !name.empty() && name.size() <= NAME_MAX && name != "." && name != ".." &&
           name.find('/') == std::string::npos && std::none_of(name.begin(), name.end(), isControl);
}

/// For root, access(2) always succeeds, so the permission bits are checked as well.
bool isWriteProtected(const std::filesystem::path& folder) {
    using std::filesystem::perms;
    constexpr auto kWrite = perms::owner_write | perms::group_write | perms::others_write;
    std::error_code unreadable;
    const auto permissions = std::filesystem::status(folder, unreadable).permissions();
    return (permissions & kWrite) == perms::none || access(folder.c_str(), W_OK) != 0;
}

}  // namespace

Result<Stick> parseStick(std::string_view text) {
    const auto [host, name] = splitName(text);
    if (!isPlainName(name)) {
        return failure(ErrorCode::BadArgument,
                       fmt::format("'{}' is no name for a stick; give one plain name after the colon, as in "
                                   "--stick {}:usb",
                                   name, host));
    }
    std::error_code error;
    const auto folder = std::filesystem::canonical(host, error);
    if (error) {
        return failure(ErrorCode::BadArgument,
                       fmt::format("the stick's folder '{}' cannot be used: {}; give a folder that exists",
                                   host, error.message()));
    }
    if (!std::filesystem::is_directory(folder, error)) {
        return failure(
            ErrorCode::BadArgument,
            fmt::format("the stick '{}' is not a folder; give the folder that holds its files", host));
    }
    return Stick{folder, name, isWriteProtected(folder)};
}

Result<std::vector<Stick>> parseSticks(const std::vector<std::string>& texts) {
    std::vector<Stick> sticks;
    for (const auto& text : texts) {
        auto stick = parseStick(text);
        VX_RETURN_IF_FAILED(stick);
        const auto sameName = [&](const Stick& other) { return other.name == stick->name; };
        if (std::any_of(sticks.begin(), sticks.end(), sameName)) {
            return failure(
                ErrorCode::BadArgument,
                fmt::format("two sticks are called '{0}'; name one of them otherwise, as in --stick "
                            "{1}:{0}2",
                            stick->name, stick->hostFolder.string()));
        }
        sticks.push_back(std::move(*stick));
    }
    return sticks;
}

}  // namespace vxtv
