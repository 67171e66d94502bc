#include "virtual_tv/channels/channel_reading.h"

#include <fmt/format.h>

#include <algorithm>
#include <limits>

#include "virtual_tv/base/json_reading.h"

namespace vxtv {

std::int64_t numberBetween(const nlohmann::json& value, const std::string& where, std::int64_t lowest,
                           std::int64_t highest) {
    if (!value.is_number_integer()) {
        throw WrongMember{where, fmt::format("is {}, not a whole number",
                                             value.is_number() ? "a fraction" : value.type_name())};
    }
    const bool tooLarge =
        value.is_number_unsigned() &&
        value.get<std::uint64_t>() > static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
    const std::int64_t number = tooLarge ? 0 : value.get<std::int64_t>();
    if (tooLarge || number < lowest || number > highest) {
        throw WrongMember{where, fmt::format("is {}, not from {} to {}", value.dump(), lowest, highest)};
    }
    return number;
}

std::string visibleText(const nlohmann::json& value, const std::string& where, std::size_t longest) {
    constexpr unsigned char kBlank = 0x20;
    constexpr unsigned char kDelete = 0x7F;
    std::string text = stringIn(value, where);
    const bool hasControl = std::any_of(text.begin(), text.end(), [](char c) {
        const auto byte = static_cast<unsigned char>(c);
        return byte < kBlank || byte == kDelete;
    });
    if (text.empty() || text.size() > longest || hasControl) {
        throw WrongMember{where, fmt::format("is no visible text of at most {} bytes", longest)};
    }
    return text;
}

void expectShortArray(const nlohmann::json& value, const std::string& where, std::size_t most) {
    expectArray(value, where);
    if (value.size() > most) {
        throw WrongMember{where, fmt::format("has {} entries; {} are allowed", value.size(), most)};
    }
}

std::string entryOf(const std::string& where, std::size_t place) {
    return within(where, fmt::format("entry {}", place));
}

}  // namespace vxtv
