#pragma once

#include <filesystem>
#include <string_view>
#include <vector>

#include "virtual_tv/show/page.h"

namespace vxtv::show {

/// The limits for one picture, and for all pictures of a page together.
inline constexpr std::size_t kLargestPicture = 2U << 20U;
inline constexpr std::size_t kMostPictureBytes = 16U << 20U;
inline constexpr std::uint32_t kLongestPictureSide = 8192;
inline constexpr std::size_t kMostFilesOfAFolder = 200;

/// The type and size from the first bytes of a PNG or JPEG file. `mediaType` is empty for any other file.
struct PictureForm {
    std::string_view mediaType;
    std::uint32_t width = 0;
    std::uint32_t height = 0;
};
PictureForm formOf(std::string_view bytes);

/// Reads a television's pictures until the limits of a page are reached. Does not follow links to files, nor
/// folders that are links out of the television.
class PictureReader {
 public:
    explicit PictureReader(const std::filesystem::path& television);

    /// Never fails: the picture itself says what is wrong with the file.
    Picture read(const std::filesystem::path& file, std::string name);

    /// The files below the folder by their relative paths, sorted; at most kMostFilesOfAFolder of them. Empty
    /// if the folder does not exist or cannot be read.
    std::vector<Picture> readFolder(const std::filesystem::path& folder);

 private:
    bool isOutside(const std::filesystem::path& file) const;

    std::filesystem::path root_;
    std::size_t left_ = kMostPictureBytes;
};

}  // namespace vxtv::show
