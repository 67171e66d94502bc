#include "virtual_tv/apps/hotel_app/data_folder.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

#include "common/file_writing.h"
#include "common/tree_removal.h"
#include "virtual_tv/applications/hotel_database.h"
#include "virtual_tv/base/descriptor.h"
#include "virtual_tv/base/private_file.h"

namespace vxtv::hotel {

namespace fs = std::filesystem;

namespace {

tl::unexpected<Error> cannotWrite(const fs::path& path, int error) {
    const bool full = vxcommon::meansNoRoom(error);
    return failure(full ? ErrorCode::NoSpace : ErrorCode::Io,
                   fmt::format("{} cannot be written: {}; {}", path.string(), reason(error),
                               full ? "make room on the disk and try again" : "check who may write there"));
}

}  // namespace

Result<void> DataFolder::recover() const {
    dropStaged();
    try {
        fs::create_directories(path() / kPicturesName);
        if (fs::exists(path() / kDatabaseName)) {
            return {};
        }
        // Made under another name first, so that the database exists completely or not at all even if the
        // application dies.
        const fs::path beside = folder_ / "hotel.db.new";
        fs::remove(beside);
        return createDatabase(beside, {}).and_then([&] { return flushFile(beside); }).map([&] {
            fs::rename(beside, path() / kDatabaseName);
        });
    } catch (const fs::filesystem_error& error) {
        return cannotWrite(error.path1(), error.code().value());
    }
}

Result<void> DataFolder::beginStaging() const {
    if (const auto removed = vxcommon::removeTree(staging()); !removed) {
        return cannotWrite(staging(), removed.error().reason);
    }
    std::error_code error;
    fs::create_directories(staging() / kPicturesName, error);
    return error ? cannotWrite(staging(), error.value()) : Result<void>();
}

Result<void> DataFolder::replaceByStaged() const {
    return flushFolder(staging() / kPicturesName)
        .and_then([this] { return flushFolder(staging()); })
        .and_then([this] { return putInPlace(staging(), path()); })
        .map_error([this](const Error& error) {
            dropStaged();
            return error;
        });
}

void DataFolder::dropStaged() const {
    static_cast<void>(vxcommon::removeTree(staging()));
}

Result<void> putInPlace(const fs::path& made, const fs::path& target) {
    std::error_code absent;
    const bool isReplaced = fs::exists(fs::symlink_status(target, absent));
    const int refused =
        vxcommon::putInPlace(made, target, {isReplaced ? Existing::Exchange : Existing::Refuse});
    if (refused != 0) {
        return cannotWrite(target, refused);
    }
    const Result<void> flushed = flushFolder(target.parent_path());
    if (isReplaced) {
        static_cast<void>(vxcommon::removeTree(made));
    }
    return flushed;
}

Result<void> writeFlushed(const fs::path& file, std::string_view bytes) {
    constexpr mode_t kMode = 0644;
    const Descriptor target(open(file.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, kMode));
    const int refused = target ? vxcommon::writeAndFlush(target.get(), bytes) : errno;
    return refused == 0 ? Result<void>() : cannotWrite(file, refused);
}

Result<void> flushFile(const fs::path& file) {
    const Descriptor target(open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
    return target && fsync(target.get()) == 0 ? Result<void>() : cannotWrite(file, errno);
}

}  // namespace vxtv::hotel
