#include "cloning_app/run/television_folder.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>

#include "common/terminal_table.h"

namespace vxclone {

Result<Descriptor> openTelevisionFolder(const std::string& path) {
    if (path.empty()) {
        return failure(ErrorCode::TelevisionIo,
                       "the television does not say where its logos and its home menu are; switch it off and "
                       "on, then try again");
    }
    // A slash at the end would follow a link in the folder's place.
    const std::string own = path.substr(0, path.find_last_not_of('/') + 1);
    Descriptor folder(open(own.c_str(), kOpenFolder));
    struct stat facts {};
    if (!folder.valid() && lstat(own.c_str(), &facts) == 0 && S_ISLNK(facts.st_mode)) {
        return failure(ErrorCode::UnsafeTelevision,
                       vxcommon::printable(own) +
                           " is a link, and what it leads to is not the television's; "
                           "put the folder itself there and try again");
    }
    if (!folder.valid() && errno != ENOENT) {
        return tl::make_unexpected(readError(Place::Television, path, errno));
    }
    return folder;
}

}  // namespace vxclone
