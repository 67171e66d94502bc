#include "common/json_text.h"

#include <nlohmann/json.hpp>
#include <string_view>

#include "common/character_width.h"
#include "common/printable.h"

namespace vxcommon {

namespace {

using OrderedJson = nlohmann::ordered_json;

constexpr std::string_view kDigitsOfAnEscape = "0123456789abcdef";
constexpr unsigned kBitsOfAnEscapeDigit = 4;
constexpr char32_t kFirstOfTwoUnits = 0x10000;
constexpr unsigned kBitsOfAUnit = 10;
constexpr char32_t kHighUnit = 0xD800;
constexpr char32_t kLowUnit = 0xDC00;

void appendUnit(std::string& text, char32_t unit) {
    text += "\\u";
    for (unsigned bits = 4 * kBitsOfAnEscapeDigit; bits != 0; bits -= kBitsOfAnEscapeDigit) {
        text += kDigitsOfAnEscape[(unit >> (bits - kBitsOfAnEscapeDigit)) & 0x0FU];
    }
}

void appendEscaped(std::string& text, char32_t character) {
    if (character < kFirstOfTwoUnits) {
        appendUnit(text, character);
        return;
    }
    const char32_t rest = character - kFirstOfTwoUnits;
    appendUnit(text, kHighUnit + (rest >> kBitsOfAUnit));
    appendUnit(text, kLowUnit + (rest & ((1U << kBitsOfAUnit) - 1)));
}

/// The JSON text with its deceptive characters escaped. Outside of strings JSON has none, except the line
/// feeds between values.
std::string withoutDeceptive(std::string_view json) {
    std::string result;
    result.reserve(json.size());
    for (std::size_t at = 0; at < json.size();) {
        const Character character = characterAt(json, at);
        if (character.value != U'\n' && isDeceptive(character.value)) {
            appendEscaped(result, character.value);
        } else {
            result += json.substr(at, character.bytes);
        }
        at += character.bytes;
    }
    return result;
}

/// The text as UTF-8. Bytes that are not UTF-8 become \xNN.
std::string asUtf8(std::string_view text) {
    std::string result;
    for (std::size_t at = 0; at < text.size();) {
        const Character character = characterAt(text, at);
        const std::string_view bytes = text.substr(at, character.bytes);
        result += character.valid ? bytes : printable(bytes).text();
        at += character.bytes;
    }
    return result;
}

OrderedJson asUtf8(const OrderedJson& value) {
    if (value.is_string()) {
        return asUtf8(std::string_view(value.get_ref<const std::string&>()));
    }
    OrderedJson result = value;
    if (value.is_object()) {
        result.clear();
        for (const auto& [name, member] : value.items()) {
            result[asUtf8(std::string_view(name))] = asUtf8(member);
        }
    }
    if (value.is_array()) {
        for (OrderedJson& element : result) {
            element = asUtf8(element);
        }
    }
    return result;
}

std::string dumped(const OrderedJson& document, int indent) {
    try {
        return document.dump(indent);
    } catch (const OrderedJson::type_error&) {
        return asUtf8(document).dump(indent);
    }
}

}  // namespace

JsonText::JsonText(const OrderedJson& document, int indent)
    : text_(withoutDeceptive(dumped(document, indent))) {}

}  // namespace vxcommon
