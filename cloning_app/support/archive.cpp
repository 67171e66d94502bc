#include "cloning_app/support/archive.h"

#include <archive.h>
#include <archive_entry.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <memory>

#include "cloning_app/base/disk_calls.h"
#include "cloning_app/base/tree_walk.h"
#include "common/file_writing.h"
#include "common/terminal_table.h"

namespace vxclone {

namespace {

constexpr mode_t kEntryMode = 0644;
constexpr mode_t kFileMode = 0600;
/// The largest number with eleven octal digits.
constexpr std::int64_t kLatestInTar = (std::int64_t{1} << 33U) - 1;

struct FreeArchive {
    void operator()(archive* pointer) const { archive_write_free(pointer); }
    void operator()(archive_entry* pointer) const { archive_entry_free(pointer); }
};
using Archive = std::unique_ptr<archive, FreeArchive>;
using Entry = std::unique_ptr<archive_entry, FreeArchive>;

la_ssize_t append(archive* /*archive*/, void* text, const void* data, std::size_t size) {
    static_cast<std::string*>(text)->append(static_cast<const char*>(data), size);
    return static_cast<la_ssize_t>(size);
}

bool add(archive* tar, const ArchiveEntry& file, std::int64_t seconds) {
    const Entry entry(archive_entry_new());
    if (!entry) {
        return false;
    }
    archive_entry_set_pathname(entry.get(), file.name.c_str());
    archive_entry_set_size(entry.get(), static_cast<la_int64_t>(file.content.size()));
    archive_entry_set_filetype(entry.get(), AE_IFREG);
    archive_entry_set_perm(entry.get(), kEntryMode);
    archive_entry_set_mtime(entry.get(), std::clamp<std::int64_t>(seconds, 0, kLatestInTar), 0);
    return archive_write_header(tar, entry.get()) == ARCHIVE_OK &&
           archive_write_data(tar, file.content.data(), file.content.size()) ==
               static_cast<la_ssize_t>(file.content.size());
}

/// Without this, a new file may be lost in a power cut although its content is on the disk. Result: 0, or the
/// system's reason (errno).
int flushFolderOf(const std::filesystem::path& file) {
    const std::filesystem::path folder = file.has_parent_path() ? file.parent_path() : ".";
    const Descriptor opened(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    return opened.valid() && realDiskCalls().flush(opened.get()) == 0 ? 0 : errno;
}

}  // namespace

Result<std::string> tarOf(const std::vector<ArchiveEntry>& entries, std::int64_t seconds) {
    std::string text;
    const Archive tar(archive_write_new());
    bool good = tar && archive_write_set_format_ustar(tar.get()) == ARCHIVE_OK &&
                archive_write_open(tar.get(), &text, nullptr, append, nullptr) == ARCHIVE_OK;
    for (const ArchiveEntry& entry : entries) {
        good = good && add(tar.get(), entry, seconds);
    }
    good = good && archive_write_close(tar.get()) == ARCHIVE_OK;
    if (!good) {
        const char* const why = tar ? archive_error_string(tar.get()) : nullptr;
        return failure(ErrorCode::Internal, std::string("the bundle could not be put together: ") +
                                                (why == nullptr ? "no memory is free" : why) + "; try again");
    }
    return text;
}

Result<void> writeNewFile(const std::string& path, const std::string& content) {
    const Descriptor file(
        open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, kFileMode));
    const int refused = file.valid() ? 0 : errno;
    if (refused == EEXIST) {
        return failure(ErrorCode::FileExists,
                       vxcommon::printable(path) +
                           " is there already and is left alone; name another file, or remove that one");
    }
    if (refused == ENOENT) {
        return failure(ErrorCode::StickMissing, "there is no folder for " + vxcommon::printable(path) +
                                                    "; put the stick in and see where it is mounted");
    }
    int reason = file.valid() ? vxcommon::writeAndFlush(file.get(), content) : refused;
    reason = reason == 0 ? flushFolderOf(path) : reason;
    if (reason == 0) {
        return {};
    }
    if (file.valid()) {
        unlink(path.c_str());
    }
    return tl::make_unexpected(writeError(Place::Stick, path, reason));
}

}  // namespace vxclone
