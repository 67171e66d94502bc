#include "cloning_app/package/manifest_reading.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string_view>

#include "cloning_app/package/digest.h"
#include "cloning_app/package/layout.h"
#include "cloning_app/package/manifest.h"
#include "common/json_reading.h"

namespace vxclone {

namespace {

using Json = nlohmann::json;
using Type = Json::value_t;

constexpr std::size_t kDigestDigits = 64;
constexpr std::string_view kHexDigits = "0123456789abcdef";
/// A time: a digit stands for any digit.
constexpr std::string_view kTimeForm = "0000-00-00T00:00:00Z";

bool isDigit(char character) {
    return character >= '0' && character <= '9';
}

bool isWithinPackage(std::string_view path) {
    const TreeLimits limits;
    std::size_t depth = 0;
    for (bool more = true; more;) {
        const std::size_t slash = path.find('/');
        const std::string_view name = path.substr(0, slash);
        if (name.empty() || name == "." || name == ".." || name.size() > limits.nameBytes ||
            name.find('\0') != std::string_view::npos || ++depth > limits.depth) {
            return false;
        }
        more = slash != std::string_view::npos;
        path.remove_prefix(more ? slash + 1 : path.size());
    }
    return true;
}

std::uint64_t sizeIn(const Json& json) {
    const auto size = memberOf(json, "size", Type::number_unsigned).get<std::uint64_t>();
    if (size > TreeLimits{}.fileBytes) {
        throw WrongManifest{"lists a file that is larger than any in a package"};
    }
    return size;
}

std::string digestIn(const Json& json) {
    std::string digest = textIn(json, "sha256");
    if (digest.size() != kDigestDigits || digest.find_first_not_of(kHexDigits) != std::string::npos) {
        throw WrongManifest{"lists a file with something else than a SHA-256"};
    }
    return digest;
}

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

const Json& memberOf(const Json& json, const char* name, Type type) {
    const Json* const member = vxcommon::memberIfThere(json, name);
    if (member == nullptr || member->type() != type) {
        throw WrongManifest{fmt::format("has no member \"{}\" of the right kind", name)};
    }
    return *member;
}

std::string textIn(const Json& json, const char* name) {
    auto text = unescaped(memberOf(json, name, Type::string).get_ref<const std::string&>());
    if (!text) {
        throw WrongManifest{fmt::format("has a text in \"{}\" that is not written as it must be", name)};
    }
    return std::move(*text);
}

std::string textOrNothingIn(const Json& json, const char* name) {
    return json.is_object() && !json.contains(name) ? std::string() : textIn(json, name);
}

std::string nameIn(const Json& json) {
    std::string name = textIn(json, "name");
    if (name.empty() || name.size() > kLongestPackageName) {
        throw WrongManifest{"has a name that is empty or too long"};
    }
    return name;
}

std::string timeIn(const Json& json, const char* name) {
    std::string time = textIn(json, name);
    const bool good = std::equal(
        time.begin(), time.end(), kTimeForm.begin(), kTimeForm.end(),
        [](char character, char form) { return isDigit(form) ? isDigit(character) : character == form; });
    if (!good) {
        throw WrongManifest{fmt::format("has something else than a time in \"{}\"", name)};
    }
    return time;
}

int tunerIn(const Json& json) {
    using Limits = std::numeric_limits<int>;
    const Json* const tuner = vxcommon::memberIfThere(json, "tuner");
    const auto number =
        tuner == nullptr ? std::nullopt : vxcommon::wholeNumber(*tuner, Limits::min(), Limits::max());
    if (!number) {
        throw WrongManifest{"has no member \"tuner\" of the right kind"};
    }
    return static_cast<int>(*number);
}

PackageEntry entryIn(const Json& json) {
    PackageEntry entry{textIn(json, "path")};
    if (!isWithinPackage(entry.path) || entry.path == kManifestFile || entry.path == kSealFile) {
        throw WrongManifest{"lists a path that no entry of a package has"};
    }
    const std::string type = textIn(json, "type");
    entry.folder = type == "folder";
    if (!entry.folder && type != "file") {
        throw WrongManifest{"lists something that is neither a file nor a folder"};
    }
    if (!entry.folder) {
        entry.bytes = sizeIn(json);
        entry.digest = digestIn(json);
    }
    return entry;
}

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
