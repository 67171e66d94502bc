#include "virtual_tv/applications/application_run.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <poll.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <system_error>
#include <utility>

#include "common/file_writing.h"
#include "virtual_tv/base/private_file.h"

namespace vxtv {

namespace fs = std::filesystem;

namespace {

constexpr mode_t kMarkMode = 0600;
constexpr std::string_view kPrefix = "app.";
constexpr std::string_view kLockSuffix = ".lock";
constexpr std::string_view kRequestSuffix = ".requests";
constexpr int kPatienceMs = 5000;

fs::path runFile(const Folder& folder, const std::string& id, std::string_view suffix) {
    return folder.run() / fmt::format("{}{}{}", kPrefix, id, suffix);
}

struct flock wholeFile(short type) {
    struct flock range {};
    range.l_type = type;
    range.l_whence = SEEK_SET;
    return range;
}

/// This kind of lock belongs to the open file, not to a process. So it is inherited, and other processes can
/// query it.
bool lock(const Descriptor& file) {
    struct flock range = wholeFile(F_WRLCK);
    return fcntl(file.get(), F_OFD_SETLK, &range) == 0;
}

void unlock(const Descriptor& file) {
    struct flock range = wholeFile(F_UNLCK);
    fcntl(file.get(), F_OFD_SETLK, &range);
}

bool isLocked(const Descriptor& file) {
    struct flock range = wholeFile(F_WRLCK);
    return fcntl(file.get(), F_OFD_GETLK, &range) == 0 && range.l_type != F_UNLCK;
}

/// The previous holder of the lock may have removed the file meanwhile.
bool isStillThere(const struct stat& held, const fs::path& path) {
    struct stat seen {};
    return lstat(path.c_str(), &seen) == 0 && held.st_dev == seen.st_dev && held.st_ino == seen.st_ino;
}

/// Whether the locked file is new. A file with a process number is the leftover of a killed application. It
/// is removed, so that nobody takes that process for the new one.
bool isFresh(const Descriptor& file, const fs::path& path) {
    struct stat held {};
    if (fstat(file.get(), &held) != 0 || !isStillThere(held, path)) {
        return false;
    }
    if (held.st_size > 0) {
        unlink(path.c_str());
    }
    return held.st_size == 0;
}

tl::unexpected<Error> cannotMark(const fs::path& file, int error) {
    return failure(vxcommon::meansNoRoom(error) ? ErrorCode::NoSpace : ErrorCode::Io,
                   fmt::format("cannot write {}: {}; check that the television's folder may be written",
                               file.string(), reason(error)));
}

tl::unexpected<Error> notRunning(const std::string& id) {
    return failure(ErrorCode::NotRunning,
                   fmt::format("the application {} does not run; `vxtv app list` shows which do", id));
}

/// Whether the application's host has ended, so that nobody reads requests any more.
bool endsSoon(const Descriptor& requests) {
    pollfd reader = {requests.get(), 0, 0};
    return poll(&reader, 1, kPatienceMs) > 0;
}

}  // namespace

RunningMark::RunningMark(fs::path lockFile, Descriptor lock)
    : lockFile_(std::move(lockFile)), lock_(std::move(lock)) {
    requestFile_ = lockFile_;
    requestFile_.replace_extension(kRequestSuffix);
}

Result<RunningMark> RunningMark::take(const Folder& folder, const std::string& id) {
    const fs::path file = runFile(folder, id, kLockSuffix);
    Descriptor taken;
    do {
        taken = Descriptor(open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, kMarkMode));
        if (!taken) {
            return cannotMark(file, errno);
        }
        if (!lock(taken)) {
            return failure(ErrorCode::Busy, fmt::format("the application {} runs already", id));
        }
    } while (!isFresh(taken, file));
    RunningMark mark(file, std::move(taken));
    unlink(mark.requestFile_.c_str());
    if (mkfifo(mark.requestFile_.c_str(), kMarkMode) != 0) {
        return cannotMark(mark.requestFile_, errno);
    }
    // Also opened for writing; otherwise the pipe would be at its end as soon as a writer closes it.
    mark.requests_ =
        Descriptor(open(mark.requestFile_.c_str(), O_RDWR | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
    return mark.requests_ ? Result<RunningMark>(std::move(mark)) : cannotMark(mark.requestFile_, errno);
}

RunningMark::~RunningMark() {
    if (lock_) {
        unlink(requestFile_.c_str());
        unlink(lockFile_.c_str());
        unlock(lock_);
    }
}

void RunningMark::tellProcess(pid_t process) const {
    const std::string text = fmt::format("{}\n", process);
    // Without this line the application never counts as running, and its launcher gives up.
    [[maybe_unused]] const ssize_t written = pwrite(lock_.get(), text.data(), text.size(), 0);
}

std::optional<pid_t> runningProcess(const Folder& folder, const std::string& id) {
    const Descriptor file(
        open(runFile(folder, id, kLockSuffix).c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
    if (!file || !isLocked(file)) {
        return std::nullopt;
    }
    std::array<char, 16> text{};
    const ssize_t length = pread(file.get(), text.data(), text.size() - 1, 0);
    const long process = length > 0 ? std::strtol(text.data(), nullptr, 10) : 0;
    return process > 0 ? std::optional<pid_t>(static_cast<pid_t>(process)) : std::nullopt;
}

void waitForEnd(const Folder& folder, const std::string& id) {
    const Descriptor file(open(runFile(folder, id, kLockSuffix).c_str(), O_RDWR | O_CLOEXEC | O_NOFOLLOW));
    struct flock range = wholeFile(F_WRLCK);
    while (file && fcntl(file.get(), F_OFD_SETLKW, &range) != 0 && errno == EINTR) continue;
}

Result<void> stopApplication(const Folder& folder, const std::string& id) {
    const fs::path file = runFile(folder, id, kRequestSuffix);
    const Descriptor requests(open(file.c_str(), O_WRONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
    struct stat status {};
    if (!requests || fstat(requests.get(), &status) != 0 || !S_ISFIFO(status.st_mode)) {
        return notRunning(id);
    }
    for (const char request : {static_cast<char>(SIGTERM), static_cast<char>(SIGKILL)}) {
        if (write(requests.get(), &request, 1) != 1) {
            return notRunning(id);
        }
        if (endsSoon(requests)) {
            return {};
        }
    }
    return failure(ErrorCode::Io,
                   fmt::format("the application {} does not end, even killed; end its session", id));
}

void removeStaleMarks(const Folder& folder) {
    std::error_code error;
    for (fs::directory_iterator entry(folder.run(), error), end; !error && entry != end;
         entry.increment(error)) {
        const std::string name = entry->path().filename().string();
        if (name.rfind(kPrefix, 0) != 0) {
            continue;
        }
        const std::string id = name.substr(kPrefix.size(), name.rfind('.') - kPrefix.size());
        const Descriptor file(
            open(runFile(folder, id, kLockSuffix).c_str(), O_RDWR | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
        if (!file || lock(file)) {
            unlink(entry->path().c_str());
        }
    }
}

}  // namespace vxtv
