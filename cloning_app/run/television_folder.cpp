#include "cloning_app/run/television_folder.h"

#include <fcntl.h>

#include <cerrno>

namespace vxclone {

Result<Descriptor> openTelevisionFolder(const std::string& path) {
    if (path.empty()) {
        return failure(ErrorCode::TelevisionIo,
                       "the television does not say where its logos and its home menu are; switch it off and "
                       "on, then try again");
    }
    Descriptor folder(open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!folder.valid() && errno != ENOENT) {
        return tl::make_unexpected(readError(Place::Television, path, errno));
    }
    return folder;
}

}  // namespace vxclone
