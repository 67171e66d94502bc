#include "common/json_reading.h"

#include <fmt/format.h>

#include <algorithm>
#include <limits>

namespace vxcommon {

namespace {

using Json = nlohmann::json;

void expectWholeNumber(const Json& value, const std::string& where) {
    if (!value.is_number_integer()) {
        throw WrongMember{where, fmt::format("is {}, not a whole number",
                                             value.is_number() ? "a fraction" : value.type_name())};
    }
}

}  // namespace

const Json* memberIfThere(const Json& value, const std::string& name) {
    const auto found = value.is_object() ? value.find(name) : value.end();
    return found == value.end() ? nullptr : &*found;
}

std::optional<std::int64_t> wholeNumber(const Json& value, std::int64_t lowest, std::int64_t highest) {
    constexpr auto kMost = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
    // An integer without a sign has its own type, and the upper half of its range does not fit.
    if (!value.is_number_integer() || (value.is_number_unsigned() && value.get<std::uint64_t>() > kMost)) {
        return std::nullopt;
    }
    const auto number = value.get<std::int64_t>();
    return number >= lowest && number <= highest ? std::optional(number) : std::nullopt;
}

std::string within(const std::string& member, const std::string& name) {
    return member.empty() ? name : fmt::format("{} > {}", member, name);
}

std::string entryOf(const std::string& where, std::size_t place) {
    return within(where, fmt::format("entry {}", place));
}

const Json& memberOf(const Json& object, const std::string& where, const std::string& name) {
    const auto found = object.find(name);
    if (found == object.end()) {
        throw WrongMember{within(where, name), "is missing"};
    }
    return *found;
}

void expectObject(const Json& value, const std::string& where) {
    if (!value.is_object()) {
        throw WrongMember{where.empty() ? "the whole" : where,
                          fmt::format("is a {}, not an object", value.type_name())};
    }
}

void expectArray(const Json& value, const std::string& where) {
    if (!value.is_array()) {
        throw WrongMember{where, fmt::format("is a {}, not an array", value.type_name())};
    }
}

void expectShortArray(const Json& value, const std::string& where, std::size_t most) {
    expectArray(value, where);
    if (value.size() > most) {
        throw WrongMember{where, fmt::format("has {} entries; {} are allowed", value.size(), most)};
    }
}

void expectOnly(const Json& object, const std::string& where, std::initializer_list<std::string_view> known) {
    expectObject(object, where);
    for (const auto& [name, value] : object.items()) {
        if (std::find(known.begin(), known.end(), name) == known.end()) {
            throw WrongMember{within(where, name), "is not a member that a profile has"};
        }
    }
}

void expectName(const std::string& name, const std::string& where) {
    if (name.empty() || name.find('\0') != std::string::npos) {
        throw WrongMember{where, "has a name that is empty or holds a NUL"};
    }
}

int intIn(const Json& value, const std::string& where) {
    expectWholeNumber(value, where);
    const auto number = wholeNumber(value, std::numeric_limits<int>::min(), std::numeric_limits<int>::max());
    if (!number) {
        throw WrongMember{where, fmt::format("is {}, which does not fit an int", value.dump())};
    }
    return static_cast<int>(*number);
}

std::int64_t numberBetween(const Json& value, const std::string& where, std::int64_t lowest,
                           std::int64_t highest) {
    expectWholeNumber(value, where);
    const auto number = wholeNumber(value, lowest, highest);
    if (!number) {
        throw WrongMember{where, fmt::format("is {}, not from {} to {}", value.dump(), lowest, highest)};
    }
    return *number;
}

bool boolIn(const Json& value, const std::string& where) {
    if (!value.is_boolean()) {
        throw WrongMember{where, fmt::format("is a {}, not true or false", value.type_name())};
    }
    return value.get<bool>();
}

std::string stringIn(const Json& value, const std::string& where) {
    if (!value.is_string()) {
        throw WrongMember{where, fmt::format("is a {}, not a string", value.type_name())};
    }
    const auto& text = value.get_ref<const std::string&>();
    if (text.find('\0') != std::string::npos) {
        throw WrongMember{where, "holds a NUL"};
    }
    return text;
}

std::string visibleText(const Json& value, const std::string& where, std::size_t longest) {
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

}  // namespace vxcommon
