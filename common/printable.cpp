#include "common/printable.h"

#include <algorithm>
#include <iterator>

#include "common/character_width.h"

namespace vxcommon {

namespace {

struct DeceptiveRange {
    char32_t first;
    char32_t last;
};

// In ascending order: both sets of control characters, soft hyphen, marks and controls of the direction of
// writing, characters without width, separators of lines and paragraphs, the byte order mark, annotations,
// and the tags.
constexpr DeceptiveRange kDeceptive[] = {{0x0, 0x1f},      {0x7f, 0x9f},      {0xad, 0xad},
                                         {0x61c, 0x61c},   {0x180e, 0x180e},  {0x200b, 0x200f},
                                         {0x2028, 0x202e}, {0x2060, 0x206f},  {0xfeff, 0xfeff},
                                         {0xfff9, 0xfffb}, {0xe0000, 0xe007f}};

constexpr std::string_view kHexadecimalDigits = "0123456789abcdef";
constexpr unsigned kBitsOfADigit = 4;

void appendBytes(std::string& text, std::string_view bytes) {
    for (const char each : bytes) {
        const auto byte = static_cast<unsigned char>(each);
        text += "\\x";
        text += kHexadecimalDigits[byte >> kBitsOfADigit];
        text += kHexadecimalDigits[byte & 0x0FU];
    }
}

}  // namespace

bool isDeceptive(char32_t character) {
    const DeceptiveRange* const found =
        std::lower_bound(std::begin(kDeceptive), std::end(kDeceptive), character,
                         [](const DeceptiveRange& range, char32_t wanted) { return range.last < wanted; });
    return found != std::end(kDeceptive) && found->first <= character;
}

Printable printable(std::string_view text) {
    Printable result;
    result.text_.reserve(text.size());
    for (std::size_t at = 0; at < text.size();) {
        const Character character = characterAt(text, at);
        const std::string_view bytes = text.substr(at, character.bytes);
        if (!character.valid || isDeceptive(character.value)) {
            appendBytes(result.text_, bytes);
        } else {
            result.text_ += bytes;
        }
        at += character.bytes;
    }
    return result;
}

Printable printableLines(std::string_view text) {
    Printable result;
    for (std::size_t end = text.find('\n'); end != std::string_view::npos; end = text.find('\n')) {
        result += printable(text.substr(0, end));
        result += "\n";
        text.remove_prefix(end + 1);
    }
    return result += printable(text);
}

}  // namespace vxcommon
