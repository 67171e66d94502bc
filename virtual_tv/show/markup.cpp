#include "virtual_tv/show/markup.h"

#include <openssl/evp.h>

#include <algorithm>
#include <nlohmann/json.hpp>

namespace vxtv::show {

namespace {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";

bool isAscii(std::string_view text) {
    return std::all_of(text.begin(), text.end(),
                       [](char letter) { return static_cast<unsigned char>(letter) < 0x80U; });
}

/// The text with the replacement character in place of what is no UTF-8.
std::string repaired(std::string_view text) {
    using Json = nlohmann::json;
    if (isAscii(text)) {
        return std::string(text);
    }
    return Json::parse(Json(text).dump(-1, ' ', false, Json::error_handler_t::replace)).get<std::string>();
}

/// What stands for a byte in markup; empty when it stands for itself.
std::string_view escapeOf(char letter) {
    const auto byte = static_cast<unsigned char>(letter);
    switch (letter) {
        case '&':
            return "&amp;";
        case '<':
            return "&lt;";
        case '>':
            return "&gt;";
        case '"':
            return "&quot;";
        case '\'':
            return "&#39;";
        case '\n':
        case '\t':
            return "";
        default:
            return byte < 0x20U || byte == 0x7FU ? kReplacement : "";
    }
}

/// The length of a character at the start that a reader would not see for what it is, or 0: the second set
/// of control characters, U+0080 to U+009F, and those for directions, U+200E, U+200F, U+202A to U+202E and
/// U+2066 to U+2069.
std::size_t deceivingLength(std::string_view text) {
    const auto byte = [text](std::size_t at) {
        return at < text.size() ? static_cast<unsigned char>(text[at]) : 0U;
    };
    if (byte(0) == 0xC2U && byte(1) >= 0x80U && byte(1) < 0xA0U) {
        return 2;
    }
    const bool deceives =
        byte(0) == 0xE2U && ((byte(1) == 0x80U && (byte(2) == 0x8EU || byte(2) == 0x8FU ||
                                                   (byte(2) >= 0xAAU && byte(2) <= 0xAEU))) ||
                             (byte(1) == 0x81U && byte(2) >= 0xA6U && byte(2) <= 0xA9U));
    return deceives ? 3 : 0;
}

std::string escaped(std::string_view original) {
    const std::string whole = repaired(original);
    std::string result;
    result.reserve(whole.size());
    for (std::string_view text = whole; !text.empty();) {
        const std::size_t deceiving = deceivingLength(text);
        const std::string_view escape = deceiving != 0 ? kReplacement : escapeOf(text.front());
        escape.empty() ? result += text.front() : result += escape;
        text.remove_prefix(std::max<std::size_t>(deceiving, 1));
    }
    return result;
}

std::string startTag(Constant name, std::initializer_list<Attribute> attributes) {
    std::string tag = "<" + std::string(name.text());
    for (const Attribute& attribute : attributes) {
        tag.append(" ")
            .append(attribute.name.text())
            .append("=\"")
            .append(escaped(attribute.value))
            .append("\"");
    }
    return tag + ">";
}

}  // namespace

Markup Markup::text(std::string_view text) {
    return Markup(escaped(text));
}

Markup Markup::element(Constant name, std::initializer_list<Attribute> attributes, const Markup& content) {
    return Markup(startTag(name, attributes) + content.html_ + "</" + std::string(name.text()) + ">");
}

Markup Markup::single(Constant name, std::initializer_list<Attribute> attributes) {
    return Markup(startTag(name, attributes));
}

Markup& Markup::operator+=(const Markup& other) {
    html_ += other.html_;
    return *this;
}

std::string dataAddress(std::string_view mediaType, std::string_view bytes) {
    std::string text((bytes.size() + 2) / 3 * 4 + 1, '\0');
    const int length =
        EVP_EncodeBlock(reinterpret_cast<unsigned char*>(text.data()),
                        reinterpret_cast<const unsigned char*>(bytes.data()), static_cast<int>(bytes.size()));
    text.resize(static_cast<std::size_t>(length));
    return "data:" + std::string(mediaType) + ";base64," + text;
}

}  // namespace vxtv::show
