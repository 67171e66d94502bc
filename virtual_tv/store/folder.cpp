#include "virtual_tv/store/folder.h"

#include <fmt/format.h>

#include <system_error>

namespace vxtv {

namespace fs = std::filesystem;

std::filesystem::path placeOf(const Folder& folder, std::string_view pathInTelevision) {
    return folder.root() / std::filesystem::path(pathInTelevision).lexically_normal().relative_path();
}

Result<void> checkOwnFolders(const Folder& folder) {
    const fs::path log = folder.dlog().parent_path();
    for (const fs::path& own :
         {folder.opt(), folder.tmp(), folder.media(), log, folder.run(), folder.secure()}) {
        std::error_code absent;
        if (fs::is_symlink(fs::symlink_status(own, absent))) {
            return failure(ErrorCode::Damaged,
                           fmt::format("{} is a link, and a television's own folder is none; put the folder "
                                       "itself there and try again",
                                       own.string()));
        }
    }
    return {};
}

}  // namespace vxtv
