#include "virtual_tv/base/own_file.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <string>

namespace vxtv {

namespace fs = std::filesystem;

namespace {

using Kind = ReadTrouble::Kind;

constexpr int kNeither = O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;

tl::unexpected<ReadTrouble> notOpened(int error) {
    switch (error) {
        case ENOENT:
            return tl::make_unexpected(ReadTrouble{Kind::Missing, "it is missing"});
        case ELOOP:
            return tl::make_unexpected(ReadTrouble{Kind::NoPlainFile, "it is a link"});
        case EISDIR:
            return tl::make_unexpected(ReadTrouble{Kind::NoPlainFile, "it is a folder"});
        case ENXIO:
            return tl::make_unexpected(ReadTrouble{Kind::NoPlainFile, "it is no plain file"});
        default:
            return tl::make_unexpected(ReadTrouble{Kind::CannotBeRead, reason(error)});
    }
}

tl::expected<Descriptor, ReadTrouble> openFolderOf(const fs::path& file) {
    const fs::path folder = file.has_parent_path() ? file.parent_path() : fs::path(".");
    Descriptor opened(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    if (opened) {
        return opened;
    }
    if (errno == ELOOP || errno == ENOTDIR) {
        return tl::make_unexpected(ReadTrouble{Kind::NoPlainFile, "its folder is a link, or no folder"});
    }
    return notOpened(errno);
}

}  // namespace

tl::expected<Descriptor, ReadTrouble> openOwnFile(const fs::path& file, int flags, mode_t mode) {
    const auto folder = openFolderOf(file);
    VX_RETURN_IF_FAILED(folder);
    Descriptor opened(openat(folder->get(), file.filename().c_str(), (flags & ~O_TRUNC) | kNeither, mode));
    struct stat status {};
    if (!opened || fstat(opened.get(), &status) != 0) {
        return notOpened(errno);
    }
    if (!S_ISREG(status.st_mode)) {
        return notOpened(S_ISDIR(status.st_mode) ? EISDIR : ENXIO);
    }
    if ((flags & O_TRUNC) != 0 && ftruncate(opened.get(), 0) != 0) {
        return notOpened(errno);
    }
    return opened;
}

tl::unexpected<Error> ownFileError(const fs::path& file, const char* what, const ReadTrouble& trouble) {
    return failure(ErrorCode::Io,
                   fmt::format("{} cannot be {}: {}; {}", file.string(), what, trouble.reason,
                               trouble.kind == Kind::NoPlainFile ? "remove it and try again"
                                                                 : "check who may read and write it"));
}

std::optional<fs::path> linkOnTheWay(const fs::path& folder, const fs::path& inside) {
    fs::path at = folder;
    for (const fs::path& part : inside.relative_path()) {
        at /= part;
        std::error_code absent;
        if (fs::is_symlink(fs::symlink_status(at, absent))) {
            return at;
        }
    }
    return std::nullopt;
}

}  // namespace vxtv
