#include "virtual_tv/show/picture.h"

#include <fmt/format.h>

#include <algorithm>
#include <optional>
#include <system_error>

#include "virtual_tv/base/private_file.h"

namespace vxtv::show {

namespace {

using namespace std::string_view_literals;

constexpr std::string_view kPngStart = "\x89PNG\r\n\x1a\n\0\0\0\rIHDR"sv;
constexpr std::string_view kJpegStart = "\xff\xd8\xff"sv;

/// The big-endian number at a position of the bytes.
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

/// Whether the segment contains the size of the picture.
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

namespace fs = std::filesystem;

PictureReader::PictureReader(const fs::path& television) {
    std::error_code gone;
    root_ = fs::canonical(television, gone);
}

bool PictureReader::isOutside(const fs::path& file) const {
    std::error_code gone;
    const fs::path folder = fs::canonical(file.parent_path(), gone);
    return !gone &&
           std::mismatch(root_.begin(), root_.end(), folder.begin(), folder.end()).first != root_.end();
}

Picture PictureReader::read(const fs::path& file, std::string name) {
    Picture picture;
    picture.name = std::move(name);
    if (isOutside(file)) {
        picture.trouble = "a link leads out of the television";
        return picture;
    }
    auto bytes = readPlainFile(file, kLargestPicture + 1);
    if (!bytes) {
        picture.trouble = bytes.error().reason;
        return picture;
    }
    std::error_code gone;
    const std::uintmax_t size = fs::file_size(file, gone);
    picture.size = gone ? bytes->size() : size;
    const PictureForm form = formOf(*bytes);
    picture.mediaType = form.mediaType;
    picture.width = form.width;
    picture.height = form.height;
    if (form.mediaType.empty()) {
        picture.trouble = "it is no PNG or JPEG picture";
    } else if (form.width == 0 || form.height == 0 ||
               std::max(form.width, form.height) > kLongestPictureSide) {
        picture.trouble = fmt::format("its sides have to be 1 to {} pixels", kLongestPictureSide);
    } else if (bytes->size() > std::min(kLargestPicture, left_)) {
        picture.trouble = "it is too large for this page";
    } else {
        left_ -= bytes->size();
        picture.bytes = std::move(*bytes);
    }
    return picture;
}

std::vector<Picture> PictureReader::readFolder(const fs::path& folder) {
    std::vector<fs::path> files;
    std::error_code trouble;
    if (fs::is_directory(fs::symlink_status(folder, trouble))) {
        for (fs::recursive_directory_iterator entry(folder, trouble), end; !trouble && entry != end;
             entry.increment(trouble)) {
            std::error_code gone;
            if (!fs::is_directory(entry->symlink_status(gone))) {
                files.push_back(entry->path());
            }
        }
    }
    std::sort(files.begin(), files.end());
    files.resize(std::min(files.size(), kMostFilesOfAFolder));
    std::vector<Picture> pictures;
    for (const fs::path& file : files) {
        pictures.push_back(read(file, file.lexically_relative(folder).string()));
    }
    return pictures;
}

}  // namespace vxtv::show
