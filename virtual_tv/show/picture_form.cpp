#include <optional>

#include "virtual_tv/show/picture.h"

namespace vxtv::show {

namespace {

using namespace std::string_view_literals;

constexpr std::string_view kPngStart = "\x89PNG\r\n\x1a\n\0\0\0\rIHDR"sv;
constexpr std::string_view kJpegStart = "\xff\xd8\xff"sv;

/// The number that begins at a place of the bytes, its highest byte first.
std::optional<std::uint32_t> numberAt(std::string_view bytes, std::size_t at, std::size_t length) {
    if (at > bytes.size() || bytes.size() - at < length) {
        return std::nullopt;
    }
    std::uint32_t number = 0;
    for (const char byte : bytes.substr(at, length)) {
        number = (number << 8U) | static_cast<unsigned char>(byte);
    }
    return number;
}

PictureForm pngForm(std::string_view bytes) {
    const auto width = numberAt(bytes, kPngStart.size(), 4);
    const auto height = numberAt(bytes, kPngStart.size() + 4, 4);
    return width && height ? PictureForm{"image/png", *width, *height} : PictureForm();
}

/// Whether the segment is one that tells the size of the picture.
bool isStartOfFrame(std::uint32_t marker) {
    constexpr std::uint32_t kHuffmanTable = 0xc4;
    constexpr std::uint32_t kExtension = 0xc8;
    constexpr std::uint32_t kArithmeticTable = 0xcc;
    return marker >= 0xc0 && marker <= 0xcf && marker != kHuffmanTable && marker != kExtension &&
           marker != kArithmeticTable;
}

PictureForm jpegForm(std::string_view bytes) {
    constexpr std::uint32_t kShortestSegment = 2;
    std::size_t at = 2;
    while (numberAt(bytes, at, 1) == 0xffU) {
        const auto marker = numberAt(bytes, at + 1, 1);
        const auto length = numberAt(bytes, at + 2, 2);
        if (!marker || !length || *length < kShortestSegment) {
            break;
        }
        if (isStartOfFrame(*marker)) {
            const auto height = numberAt(bytes, at + 5, 2);
            const auto width = numberAt(bytes, at + 7, 2);
            return width && height ? PictureForm{"image/jpeg", *width, *height} : PictureForm();
        }
        at += 2 + *length;
    }
    return {};
}

}  // namespace

PictureForm formOf(std::string_view bytes) {
    if (bytes.substr(0, kPngStart.size()) == kPngStart) {
        return pngForm(bytes);
    }
    return bytes.substr(0, kJpegStart.size()) == kJpegStart ? jpegForm(bytes) : PictureForm();
}

}  // namespace vxtv::show
