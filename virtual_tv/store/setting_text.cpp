#include "virtual_tv/store/setting_text.h"

#include <fmt/format.h>

#include <array>
#include <charconv>
#include <string_view>
#include <utility>

namespace vxtv {

namespace {

constexpr std::array<std::pair<std::string_view, bool>, 6> kBoolWords = {
    {{"0", false}, {"1", true}, {"false", false}, {"true", true}, {"off", false}, {"on", true}}};

Result<SettingValue> parseInt(const std::string& key, const std::string& text) {
    int value = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    if (error == std::errc() && stop == end) {
        return value;
    }
    return failure(
        ErrorCode::OutOfRange,
        fmt::format("\"{}\" does not fit {}: give a whole number from -2147483648 to 2147483647", text, key));
}

Result<SettingValue> parseBool(const std::string& key, const std::string& text) {
    for (const auto& [word, value] : kBoolWords) {
        if (text == word) {
            return value;
        }
    }
    return failure(ErrorCode::OutOfRange,
                   fmt::format("\"{}\" does not fit {}: give 0, 1, true, false, on or off", text, key));
}

}  // namespace

std::string plainText(const SettingValue& value) {
    if (const auto* text = std::get_if<std::string>(&value)) {
        return *text;
    }
    if (const auto* number = std::get_if<int>(&value)) {
        return std::to_string(*number);
    }
    return std::get<bool>(value) ? "true" : "false";
}

std::string quotedText(const SettingValue& value) {
    return std::holds_alternative<std::string>(value) ? fmt::format("\"{}\"", plainText(value))
                                                      : plainText(value);
}

Result<SettingValue> parseValue(const std::string& key, SettingType type, const std::string& text) {
    switch (type) {
        case SettingType::Int:
            return parseInt(key, text);
        case SettingType::Bool:
            return parseBool(key, text);
        case SettingType::String:
            break;
    }
    return text;
}

}  // namespace vxtv
