#include "virtual_tv/process/live_share.h"

#include <fcntl.h>
#include <fmt/core.h>
#include <sys/file.h>
#include <sys/wait.h>

#include <system_error>

#include "virtual_tv/base/live_file.h"

namespace vxtv {

namespace {

constexpr mode_t kOwnerOnly = 0600;

Descriptor opened(const std::filesystem::path& file) {
    return Descriptor(open(file.c_str(), O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC, kOwnerOnly));
}

bool isLocked(const Descriptor& file, int how) {
    while (file && flock(file.get(), how) != 0) {
        if (errno != EINTR) return false;
    }
    return static_cast<bool>(file);
}

}  // namespace

tl::unexpected<Error> LiveShare::cannotUse(const std::filesystem::path& file) const {
    return failure(ErrorCode::Io,
                   fmt::format("{} cannot use '{}': {}; see that you may write to the television's folder",
                               files_.name, file.string(), reason()));
}

/// The file with the address is locked for the service, which inherits the lock and keeps it until its end.
Result<void> LiveShare::startNew(const Start& start) {
    const Descriptor file = opened(files_.address);
    Descriptor lock = opened(files_.lock);
    // A process that looks for the address locks the file for a moment.
    const bool isOurs = lock && isLocked(file, LOCK_EX) && ftruncate(file.get(), 0) == 0;
    if (!isOurs) return cannotUse(files_.address);
    const auto service = start({std::move(lock), file.get()});
    VX_RETURN_IF_FAILED(service);
    keeper_ = service->keeper;
    const std::string line = service->address + "\n";
    if (pwrite(file.get(), line.data(), line.size(), 0) != static_cast<ssize_t>(line.size())) {
        return cannotUse(files_.address);
    }
    return {};
}

Result<void> LiveShare::take(const Start& start) {
    std::error_code ignored;
    std::filesystem::create_directory(files_.folder, ignored);
    // Only one process at a time checks for a service and starts it.
    const Descriptor turn(open(files_.folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!isLocked(turn, LOCK_EX)) return cannotUse(files_.folder);
    // If a process started a service and was killed before it wrote the address, nobody can reach that
    // service. Its keeper ends it, unless a share is taken meanwhile.
    if (!lineOfLiveFile(files_.address)) waitForEndOfLiveFile(files_.address);
    Descriptor lock = opened(files_.lock);
    // A keeper that is ending its service holds the lock until that is done.
    if (!isLocked(lock, LOCK_SH)) return cannotUse(files_.lock);
    if (!lineOfLiveFile(files_.address)) {
        if (const auto started = startNew(start); !started) return started;
    }
    lock_ = std::move(lock);
    return {};
}

void LiveShare::join() {
    Descriptor lock(open(files_.lock.c_str(), O_RDWR | O_NOFOLLOW | O_CLOEXEC));
    // If a keeper has the lock, it is ending its service.
    const bool isShared = isLocked(lock, LOCK_SH | LOCK_NB);
    if (isShared && lineOfLiveFile(files_.address)) lock_ = std::move(lock);
}

void LiveShare::end() {
    lock_.close();
    waitForEndOfLiveFile(files_.address);
    while (keeper_ > 0 && waitpid(keeper_, nullptr, 0) < 0 && errno == EINTR) continue;
    unlink(files_.address.c_str());
    unlink(files_.lock.c_str());
}

}  // namespace vxtv
