#include "cloning_app/base/small_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdio>

#include "common/file_writing.h"
#include "common/terminal_table.h"

namespace vxclone {

namespace {

constexpr mode_t kSmallFileMode = 0664;

}  // namespace

Result<std::optional<std::string>> readSmallFile(const Tree& folder, const std::string& name,
                                                 std::size_t most) {
    const std::string path = folder.path + "/" + name;
    const Descriptor file(
        openat(folder.descriptor, name.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    if (!file.valid() && errno == ENOENT) {
        return std::optional<std::string>();
    }
    struct stat facts {};
    if (!file.valid() || fstat(file.get(), &facts) != 0) {
        return tl::make_unexpected(readError(folder.place, path, errno));
    }
    if (!S_ISREG(facts.st_mode)) {
        return failure(
            ErrorCode::UnsafeEntry,
            vxcommon::printable(path) + " is not a file; make the package again with vxclone backup");
    }
    const auto wanted = static_cast<std::uintmax_t>(facts.st_size) + 1;
    std::string text(static_cast<std::size_t>(std::min<std::uintmax_t>(most, wanted)), '\0');
    std::size_t size = 0;
    while (size < text.size()) {
        const ssize_t got = read(file.get(), text.data() + size, text.size() - size);
        if (got < 0 && errno != EINTR) {
            return tl::make_unexpected(readError(folder.place, path, errno));
        }
        if (got == 0) {
            break;
        }
        size += got < 0 ? 0 : static_cast<std::size_t>(got);
    }
    text.resize(size);
    return std::optional(std::move(text));
}

Result<void> writeSmallFile(const Tree& folder, const std::string& name, const std::string& content) {
    int reason = removeTree(folder.descriptor, name);
    if (reason == 0) {
        const Descriptor file(openat(folder.descriptor, name.c_str(),
                                     O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, kSmallFileMode));
        reason = file.valid() ? vxcommon::writeAndFlush(file.get(), content) : errno;
    }
    if (reason != 0) {
        removeTree(folder.descriptor, name);
        return tl::make_unexpected(writeError(folder.place, folder.path + "/" + name, reason));
    }
    return {};
}

std::string newFileOf(const std::string& name) {
    return name + ".new";
}

Result<void> replaceSmallFile(const Tree& folder, const std::string& name, const std::string& content,
                              Flushed flushed) {
    const std::string newName = newFileOf(name);
    VX_RETURN_IF_FAILED(writeSmallFile(folder, newName, content));
    if (renameat(folder.descriptor, newName.c_str(), folder.descriptor, name.c_str()) != 0 ||
        (flushed == Flushed::ContentAndName && fsync(folder.descriptor) != 0)) {
        return tl::make_unexpected(writeError(folder.place, folder.path + "/" + name, errno));
    }
    return {};
}

}  // namespace vxclone
