#include "virtual_tv/base/private_file.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <system_error>

#include "virtual_tv/base/descriptor.h"

namespace vxtv {

namespace fs = std::filesystem;

namespace {

tl::unexpected<Error> cannotWrite(const fs::path& file, int error) {
    const bool full = vxcommon::meansNoRoom(error);
    const char* const advice = full             ? "make room on the disk and try again"
                               : error == EFBIG ? kRaiseFileSizeLimit
                                                : "check that its folder is there and may be written";
    return failure(full ? ErrorCode::NoSpace : ErrorCode::Io,
                   fmt::format("{} cannot be written: {}; {}", file.string(), reason(error), advice));
}

fs::path folderOf(const fs::path& file) {
    return file.has_parent_path() ? file.parent_path() : fs::path(".");
}

ReadTrouble troubleOf(int error) {
    if (error == ENOENT || error == ENOTDIR) {
        return {ReadTrouble::Kind::Missing, "it is missing"};
    }
    // open(2) fails for a socket.
    const bool special = error == ELOOP || error == ENXIO;
    return special ? ReadTrouble{ReadTrouble::Kind::NoPlainFile,
                                 error == ELOOP ? "it is a link" : "it is a socket"}
                   : ReadTrouble{ReadTrouble::Kind::CannotBeRead, reason(error)};
}

}  // namespace

tl::expected<std::string, ReadTrouble> readPlainFile(const fs::path& file, std::size_t limit) {
    const Descriptor source(open(file.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    struct stat status {};
    if (!source || fstat(source.get(), &status) != 0) {
        return tl::make_unexpected(troubleOf(errno));
    }
    if (!S_ISREG(status.st_mode)) {
        return tl::make_unexpected(ReadTrouble{ReadTrouble::Kind::NoPlainFile, S_ISDIR(status.st_mode)
                                                                                   ? "it is a folder"
                                                                                   : "it is no plain file"});
    }
    std::string bytes(limit, '\0');
    std::size_t length = 0;
    ssize_t count = 0;
    do {
        count = read(source.get(), bytes.data() + length, limit - length);
        length += static_cast<std::size_t>(std::max<ssize_t>(count, 0));
    } while ((count > 0 && length < limit) || (count < 0 && errno == EINTR));
    if (count < 0) {
        return tl::make_unexpected(troubleOf(errno));
    }
    bytes.resize(length);
    return bytes;
}

Result<void> writePrivateFile(const fs::path& file, std::string_view bytes, Existing existing) {
    auto beside = vxcommon::Beside::file(file);
    if (const int refused = beside.write(bytes); refused != 0) {
        return cannotWrite(file, refused);
    }
    const int refused = beside.putInPlace({existing, vxcommon::WithoutRefusal::Link});
    if (refused == EEXIST) {
        return failure(
            ErrorCode::AlreadyExists,
            fmt::format("{} already exists; choose another name, or remove it first", file.string()));
    }
    return refused == 0 ? flushFolder(folderOf(file)) : cannotWrite(file, refused);
}

Result<void> flushFolder(const fs::path& folder) {
    const Descriptor directory(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!directory || (fsync(directory.get()) != 0 && errno != EINVAL)) {
        return cannotWrite(folder, errno);
    }
    return {};
}

const char* const kRaiseFileSizeLimit = "raise the limit of the file size (ulimit -f) and try again";

bool fileMayNotGrow(std::uintmax_t bytes) {
    rlimit limit{};
    return getrlimit(RLIMIT_FSIZE, &limit) == 0 && limit.rlim_cur != RLIM_INFINITY && bytes >= limit.rlim_cur;
}

}  // namespace vxtv
