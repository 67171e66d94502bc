#include "cloning_app/package/escaped_text.h"

#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>

#include "cloning_app/package/digest.h"

namespace vxclone {

namespace {

constexpr std::string_view kMark = "\\x";
constexpr std::size_t kMarkedBytes = 4;

/// The characters that take this many bytes in UTF-8: what the first byte looks like, and the least of them.
struct Form {
    std::size_t bytes;
    unsigned mask;
    unsigned first;
    std::uint32_t least;
};
constexpr std::array kForms = {Form{1, 0x80, 0x00, 0}, Form{2, 0xe0, 0xc0, 0x80}, Form{3, 0xf0, 0xe0, 0x800},
                               Form{4, 0xf8, 0xf0, 0x10000}};

bool isPlain(std::uint32_t character) {
    const bool control = character < 0x20 || (character >= 0x7f && character < 0xa0);
    const bool surrogate = character >= 0xd800 && character < 0xe000;
    return !control && !surrogate && character != '\\' && character <= 0x10ffff;
}

/// How many bytes the character at the text's start takes that may stand as it is; 0 when none does.
std::size_t plainBytesAt(std::string_view text) {
    const unsigned first = static_cast<unsigned char>(text.front());
    for (const Form& form : kForms) {
        if ((first & form.mask) != form.first || text.size() < form.bytes) {
            continue;
        }
        std::uint32_t character = first & ~form.mask;
        for (std::size_t index = 1; index < form.bytes; ++index) {
            const unsigned next = static_cast<unsigned char>(text[index]);
            if ((next & 0xc0U) != 0x80U) {
                return 0;
            }
            character = (character << 6U) | (next & 0x3fU);
        }
        return character >= form.least && isPlain(character) ? form.bytes : 0;
    }
    return 0;
}

}  // namespace

std::string escaped(std::string_view bytes) {
    std::string text;
    while (!bytes.empty()) {
        const std::size_t plain = plainBytesAt(bytes);
        if (plain == 0) {
            text += std::string(kMark) + hexText(bytes.substr(0, 1));
        } else {
            text += bytes.substr(0, plain);
        }
        bytes.remove_prefix(plain == 0 ? 1 : plain);
    }
    return text;
}

std::optional<std::string> unescaped(std::string_view text) {
    std::string bytes;
    for (std::size_t at = 0; at < text.size();) {
        if (text[at] != kMark.front()) {
            bytes += text[at++];
            continue;
        }
        unsigned byte = 0;
        const std::string_view digits = text.substr(at, kMarkedBytes);
        const char* const end = digits.data() + digits.size();
        if (digits.size() != kMarkedBytes ||
            std::from_chars(digits.data() + kMark.size(), end, byte, 16).ptr != end) {
            return std::nullopt;
        }
        bytes += static_cast<char>(byte);
        at += kMarkedBytes;
    }
    return escaped(bytes) == text ? std::optional(bytes) : std::nullopt;
}

}  // namespace vxclone
