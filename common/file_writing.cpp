#include "common/file_writing.h"

#include <unistd.h>

#include <cerrno>
#include <cstddef>

namespace vxcommon {

int writeAndFlush(int file, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = write(file, bytes.data(), bytes.size());
        if (written < 0 && errno != EINTR) {
            return errno;
        }
        bytes.remove_prefix(written < 0 ? 0 : static_cast<std::size_t>(written));
    }
    return fsync(file) == 0 ? 0 : errno;
}

bool meansNoRoom(int reason) {
    return reason == ENOSPC || reason == EDQUOT;
}

}  // namespace vxcommon
