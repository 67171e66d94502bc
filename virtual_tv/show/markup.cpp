#include "virtual_tv/show/markup.h"

#include <openssl/evp.h>

#include "common/character_width.h"
#include "common/printable.h"

namespace vxtv::show {

namespace {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";

/// The escape for a byte in markup; empty if it needs none.
std::string_view escapeOf(char letter) {
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
        default:
            return "";
    }
}

/// The escape for a character in markup; empty if it needs none.
std::string_view escapeOf(const vxcommon::Character& character) {
    const char32_t value = character.value;
    const bool space = value == U'\n' || value == U'\t';
    if (!character.valid || (vxcommon::isDeceptive(value) && !space)) {
        return kReplacement;
    }
    return character.bytes == 1 ? escapeOf(static_cast<char>(value)) : std::string_view();
}

std::string escaped(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    for (std::size_t at = 0; at < text.size();) {
        const vxcommon::Character character = vxcommon::characterAt(text, at);
        const std::string_view escape = escapeOf(character);
        result += escape.empty() ? text.substr(at, character.bytes) : escape;
        at += character.bytes;
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
