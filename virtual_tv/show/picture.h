#pragma once

#include <filesystem>
#include <string_view>
#include <vector>

#include "virtual_tv/show/page.h"

namespace vxtv::show {

/// What a page may hold of a picture, and of all together.
inline constexpr std::size_t kLargestPicture = 2U << 20U;
inline constexpr std::size_t kMostPictureBytes = 16U << 20U;
inline constexpr std::uint32_t kLongestPictureSide = 8192;
inline constexpr std::size_t kMostFilesOfAFolder = 200;

/// What the first bytes of a PNG or JPEG file say. `mediaType` is empty for any other.
struct PictureForm {
    std::string_view mediaType;
    std::uint32_t width = 0;
    std::uint32_t height = 0;
};
PictureForm formOf(std::string_view bytes);

/// Reads a television's pictures until the page has enough of them. Follows no link to a file, and no
/// folder's link out of the television.
class PictureReader {
 public:
    explicit PictureReader(const std::filesystem::path& television);

    /// Never fails: what is wrong with the file is told by the picture.
    Picture read(const std::filesystem::path& file, std::string name);

    /// The files below the folder by their paths in it, ordered; at most kMostFilesOfAFolder of them. None
    /// when there is no folder, or when it cannot be read.
    std::vector<Picture> readFolder(const std::filesystem::path& folder);

 private:
    bool isOutside(const std::filesystem::path& file) const;

    std::filesystem::path root_;
    std::size_t left_ = kMostPictureBytes;
};

}  // namespace vxtv::show
