#include "virtual_tv/base/json_reading.h"

#include <fmt/format.h>

#include <algorithm>
#include <limits>

namespace vxtv {

std::string within(const std::string& member, const std::string& name) {
    return member.empty() ? name : fmt::format("{} > {}", member, name);
}

const nlohmann::json& memberOf(const nlohmann::json& object, const std::string& where,
                               const std::string& name) {
    const auto found = object.find(name);
    if (found == object.end()) {
        throw WrongMember{within(where, name), "is missing"};
    }
    return *found;
}

void expectObject(const nlohmann::json& value, const std::string& where) {
    if (!value.is_object()) {
        throw WrongMember{where.empty() ? "the whole" : where,
                          fmt::format("is a {}, not an object", value.type_name())};
    }
}

void expectArray(const nlohmann::json& value, const std::string& where) {
    if (!value.is_array()) {
        throw WrongMember{where, fmt::format("is a {}, not an array", value.type_name())};
    }
}

void expectOnly(const nlohmann::json& object, const std::string& where,
                std::initializer_list<std::string_view> known) {
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

int intIn(const nlohmann::json& value, const std::string& where) {
    if (!value.is_number_integer()) {
        throw WrongMember{where, fmt::format("is {}, not a whole number",
                                             value.is_number() ? "a fraction" : value.type_name())};
    }
    constexpr int kHighest = std::numeric_limits<int>::max();
    const bool tooLarge = value.is_number_unsigned() ? value.get<std::uint64_t>() > std::uint64_t{kHighest}
                                                     : value.get<std::int64_t>() > std::int64_t{kHighest};
    if (tooLarge || value.get<std::int64_t>() < std::numeric_limits<int>::min()) {
        throw WrongMember{where, fmt::format("is {}, which does not fit an int", value.dump())};
    }
    return value.get<int>();
}

bool boolIn(const nlohmann::json& value, const std::string& where) {
    if (!value.is_boolean()) {
        throw WrongMember{where, fmt::format("is a {}, not true or false", value.type_name())};
    }
    return value.get<bool>();
}

std::string stringIn(const nlohmann::json& value, const std::string& where) {
    if (!value.is_string()) {
        throw WrongMember{where, fmt::format("is a {}, not a string", value.type_name())};
    }
    const auto& text = value.get_ref<const std::string&>();
    if (text.find('\0') != std::string::npos) {
        throw WrongMember{where, "holds a NUL"};
    }
    return text;
}

}  // namespace vxtv
