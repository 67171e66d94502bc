#include "virtual_tv/services/value_shape.h"

#include <fmt/format.h>

#include <algorithm>
#include <set>
#include <utility>

#include "virtual_tv/base/json_reading.h"

namespace vxtv {

using Json = nlohmann::json;

namespace {

Json::json_pointer pointerTo(const ValueRule& rule) {
    return Json::json_pointer("/" + rule.name);
}

bool isOneOf(Part part, Parts parts) {
    return std::find(parts.begin(), parts.end(), part) != parts.end();
}

void expectRange(const ValueRule& rule, int value, std::string_view unit, const std::string& where) {
    if (value < rule.lowest || value > rule.highest) {
        throw WrongMember{where,
                          fmt::format("is {}{}, not {} to {}", value, unit, rule.lowest, rule.highest)};
    }
}

bool isControl(char byte) {
    constexpr unsigned char kFirstPrintable = 0x20;
    constexpr unsigned char kDelete = 0x7F;
    const auto code = static_cast<unsigned char>(byte);
    return code < kFirstPrintable || code == kDelete;
}

void expectText(const ValueRule& rule, const std::string& text, const std::string& where) {
    if (std::any_of(text.begin(), text.end(), isControl)) {
        throw WrongMember{where, "holds a control character"};
    }
    // The conversion is safe, because the largest document is much shorter than the range of int.
    expectRange(rule, static_cast<int>(text.size()), " bytes long", where);
}

void expectValue(const ValueRule& rule, const Json& value, const std::string& where) {
    switch (rule.kind) {
        case ValueRule::Kind::Number:
            return expectRange(rule, intIn(value, where), "", where);
        case ValueRule::Kind::OnOff:
            boolIn(value, where);
            return;
        case ValueRule::Kind::Text:
            return expectText(rule, stringIn(value, where), where);
        case ValueRule::Kind::OneOf:
            break;
    }
    const std::string choice = stringIn(value, where);
    if (std::find(rule.choices.begin(), rule.choices.end(), choice) == rule.choices.end()) {
        throw WrongMember{where, fmt::format("is none of {}", fmt::join(rule.choices, ", "))};
    }
}

/// Checks the values and returns them as a separate document.
Json checkedValues(const Json& document, const std::string& where, const std::vector<ValueRule>& rules,
                   Parts parts) {
    Json values = Json::object();
    for (const ValueRule& rule : rules) {
        if (isOneOf(rule.part, parts)) {
            const std::string member = within(where, rule.name);
            if (!document.contains(pointerTo(rule))) {
                throw WrongMember{member, "is missing"};
            }
            const Json& value = document.at(pointerTo(rule));
            expectValue(rule, value, member);
            values[pointerTo(rule)] = value;
        }
    }
    return values;
}

/// Throws for members of the document that are not in `known`, which holds all allowed ones.
void expectNoMore(const Json& document, const Json& known, const std::string& where) {
    for (const auto& [name, value] : document.items()) {
        const std::string member = within(where, name);
        if (!known.contains(name)) {
            throw WrongMember{member, "is no value of this service"};
        }
        if (value.is_object()) {
            expectNoMore(value, known.at(name), member);
        }
    }
}

void expectEntries(const Json& entries, const std::string& where, const ListRule& list) {
    expectArray(entries, where);
    if (entries.size() > list.most) {
        throw WrongMember{where, fmt::format("has {} entries, more than {}", entries.size(), list.most)};
    }
    std::set<std::string> keys;
    for (std::size_t i = 0; i < entries.size(); ++i) {
        const std::string member = within(where, std::to_string(i + 1));
        expectObject(entries[i], member);
        expectNoMore(entries[i], checkedValues(entries[i], member, list.fields, kAllParts), member);
        if (!keys.insert(entries[i].at(list.key).get<std::string>()).second) {
            throw WrongMember{within(member, list.key), "stands there twice"};
        }
    }
}

void addTexts(const Json& document, const std::string& prefix, const std::vector<ValueRule>& rules,
              Parts parts, Texts& texts) {
    for (const ValueRule& rule : rules) {
        if (isOneOf(rule.part, parts)) {
            texts[prefix + rule.name] = document.at(pointerTo(rule)).dump();
        }
    }
}

}  // namespace

ValueRule numberFrom(std::string_view name, int lowest, int highest) {
    return {std::string(name), ValueRule::Kind::Number, lowest, highest};
}

ValueRule onOff(std::string_view name) {
    return {std::string(name), ValueRule::Kind::OnOff};
}

ValueRule oneOf(std::string_view name, std::vector<std::string_view> choices) {
    return {std::string(name), ValueRule::Kind::OneOf, 0, 0, std::move(choices)};
}

ValueRule textOf(std::string_view name, int shortest, int longest) {
    return {std::string(name), ValueRule::Kind::Text, shortest, longest};
}

ValueRule as(Part part, ValueRule rule) {
    rule.part = part;
    return rule;
}

std::vector<ValueRule> below(std::initializer_list<std::string_view> paths,
                             const std::vector<ValueRule>& rules) {
    std::vector<ValueRule> all;
    for (const std::string_view path : paths) {
        for (ValueRule rule : rules) {
            rule.name = fmt::format("{}/{}", path, rule.name);
            all.push_back(std::move(rule));
        }
    }
    return all;
}

void expectShape(const Json& document, const std::string& where, const ValueShape& shape, Parts parts) {
    expectObject(document, where);
    Json known = checkedValues(document, where, shape.values, parts);
    for (const ListRule& list : shape.lists) {
        const Json& entries = memberOf(document, where, list.name);
        expectEntries(entries, within(where, list.name), list);
        known[list.name] = true;
    }
    expectNoMore(document, known, where);
}

Json partsOf(const Json& document, const ValueShape& shape, Parts parts) {
    Json chosen = Json::object();
    for (const ValueRule& rule : shape.values) {
        if (isOneOf(rule.part, parts)) {
            chosen[pointerTo(rule)] = document.at(pointerTo(rule));
        }
    }
    for (const ListRule& list : shape.lists) {
        if (isOneOf(Part::Carried, parts)) {
            chosen[list.name] = document.at(list.name);
        }
    }
    return chosen;
}

Texts textsIn(const Json& document, const ValueShape& shape, Parts parts) {
    Texts texts;
    addTexts(document, "", shape.values, parts, texts);
    for (const ListRule& list : shape.lists) {
        if (!isOneOf(Part::Carried, parts)) {
            continue;
        }
        int position = 0;
        for (const Json& entry : document.at(list.name)) {
            const std::string prefix =
                fmt::format("{}/{}/", list.name, entry.at(list.key).get<std::string>());
            addTexts(entry, prefix, list.fields, kAllParts, texts);
            texts.erase(prefix + list.key);
            ++position;
            if (list.isOrdered) {
                texts[prefix + "position"] = std::to_string(position);
            }
        }
    }
    return texts;
}

}  // namespace vxtv
