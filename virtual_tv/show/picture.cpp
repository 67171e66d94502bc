#include "virtual_tv/show/picture.h"

#include <fmt/format.h>

#include <algorithm>
#include <system_error>

#include "virtual_tv/television/private_file.h"

namespace vxtv::show {

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
