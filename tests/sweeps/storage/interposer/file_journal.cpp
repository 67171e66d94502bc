// Loaded into a program before the C library: writes down everything that the program changes on one file
// system, in order, with the data. VX_JOURNAL names the file for it, VX_JOURNAL_OF the folder at which the
// file system is mounted; applications, which inherit both but see no stick, write nothing down. With
// VX_JOURNAL_NO_EXCHANGE that file system cannot exchange two names; with VX_JOURNAL_KILL_AT, a number from 1
// on, the program is killed right after that change. tests/sweeps/storage/journal.h reads the journal.

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

namespace {

using Inode = std::uint64_t;

template <typename Call>
Call* original(const char* name) {
    return reinterpret_cast<Call*>(dlsym(RTLD_NEXT, name));
}

/// The journal of this process. Nothing is recorded if the two variables are not set.
class Journal {
 public:
    Journal() {
        const char* const file = std::getenv("VX_JOURNAL");
        const char* const folder = std::getenv("VX_JOURNAL_OF");
        const char* const killAt = std::getenv("VX_JOURNAL_KILL_AT");
        untilDeath_ = killAt != nullptr ? std::atol(killAt) : 0;
        struct stat facts {};
        struct stat above {};
        const bool isMounted = folder != nullptr && stat(folder, &facts) == 0 &&
                               stat((std::string(folder) + "/..").c_str(), &above) == 0 &&
                               facts.st_dev != above.st_dev;
        if (file != nullptr && isMounted) {
            device_ = facts.st_dev;
            file_ = original<int(const char*, int, ...)>("open")(file, kAppend, 0600);
        }
    }

    /// The inode, if it is on the file system.
    std::optional<Inode> inodeOf(int descriptor) const {
        struct stat facts {};
        const bool on = file_ >= 0 && fstat(descriptor, &facts) == 0 && facts.st_dev == device_;
        return on ? std::optional<Inode>(facts.st_ino) : std::nullopt;
    }

    void add(const std::string& line) {
        static auto* const realWrite = original<ssize_t(int, const void*, size_t)>("write");
        const std::string text = line + "\n";
        if (realWrite(file_, text.data(), text.size()) != static_cast<ssize_t>(text.size())) {
            std::abort();
        }
        if (--untilDeath_ == 0) {
            raise(SIGKILL);
        }
    }

    /// One change at a time, so that journal and disk have the same order.
    std::mutex& mutex() { return mutex_; }

 private:
    static constexpr int kAppend = O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC;

    std::mutex mutex_;
    long untilDeath_ = 0;
    dev_t device_ = 0;
    int file_ = -1;
};

Journal& journal() {
    static auto* const only = new Journal;
    return *only;
}

std::string hex(std::string_view data) {
    constexpr std::string_view kDigits = "0123456789abcdef";
    std::string text;
    text.reserve(data.size() * 2);
    for (const char character : data) {
        const auto byte = static_cast<unsigned char>(character);
        text += kDigits[byte >> 4U];
        text += kDigits[byte & 15U];
    }
    return text;
}

std::string number(Inode inode) {
    return std::to_string(inode);
}

bool exists(int folder, const char* name) {
    return faccessat(folder, name, F_OK, AT_SYMLINK_NOFOLLOW) == 0;
}

void addCreation(int folder, const char* name, std::string_view kind) {
    struct stat facts {};
    const auto parent = journal().inodeOf(folder);
    if (parent && fstatat(folder, name, &facts, AT_SYMLINK_NOFOLLOW) == 0) {
        journal().add(std::string(kind) + " " + number(*parent) + " " + name + " " + number(facts.st_ino));
    }
}

int flushAndAdd(const char* call, int descriptor, std::string_view word) {
    const std::lock_guard<std::mutex> alone(journal().mutex());
    const int result = original<int(int)>(call)(descriptor);
    const int reason = errno;
    if (const auto inode = journal().inodeOf(descriptor); result == 0 && inode) {
        journal().add(std::string(word) + " " + number(*inode));
    }
    errno = reason;
    return result;
}

}  // namespace

extern "C" {

int openat(int folder, const char* name, int flags, ...) {
    va_list rest;
    va_start(rest, flags);
    const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(rest, mode_t) : 0;
    va_end(rest);
    const std::lock_guard<std::mutex> alone(journal().mutex());
    const bool creates = (flags & O_CREAT) != 0 && !exists(folder, name);
    const int result = original<int(int, const char*, int, ...)>("openat")(folder, name, flags, mode);
    const int reason = errno;
    if (creates && result >= 0) {
        addCreation(folder, name, "file");
    }
    errno = reason;
    return result;
}

int mkdirat(int folder, const char* name, mode_t mode) {
    const std::lock_guard<std::mutex> alone(journal().mutex());
    const int result = original<int(int, const char*, mode_t)>("mkdirat")(folder, name, mode);
    const int reason = errno;
    if (result == 0) {
        addCreation(folder, name, "folder");
    }
    errno = reason;
    return result;
}

ssize_t write(int descriptor, const void* data, size_t size) {
    const std::lock_guard<std::mutex> alone(journal().mutex());
    const ssize_t result = original<ssize_t(int, const void*, size_t)>("write")(descriptor, data, size);
    const int reason = errno;
    if (const auto inode = journal().inodeOf(descriptor); result > 0 && inode) {
        const off_t begin = lseek(descriptor, 0, SEEK_CUR) - result;
        const std::string_view written(static_cast<const char*>(data), static_cast<size_t>(result));
        journal().add("write " + number(*inode) + " " + std::to_string(begin) + " " + hex(written));
    }
    errno = reason;
    return result;
}

int renameat2(int folder, const char* from, int toFolder, const char* to, unsigned flags) noexcept {
    const std::lock_guard<std::mutex> alone(journal().mutex());
    const auto parent = journal().inodeOf(folder);
    if (flags != 0 && parent && std::getenv("VX_JOURNAL_NO_EXCHANGE") != nullptr) {
        errno = EINVAL;
        return -1;
    }
    const auto call = original<int(int, const char*, int, const char*, unsigned)>("renameat2");
    const int result = call(folder, from, toFolder, to, flags);
    const int reason = errno;
    if (result == 0 && parent) {
        const std::string word = (flags & RENAME_EXCHANGE) != 0 ? "exchange " : "move ";
        journal().add(word + number(*parent) + " " + from + " " + to);
    }
    errno = reason;
    return result;
}

int unlinkat(int folder, const char* name, int flags) noexcept {
    const std::lock_guard<std::mutex> alone(journal().mutex());
    const int result = original<int(int, const char*, int)>("unlinkat")(folder, name, flags);
    const int reason = errno;
    if (const auto parent = journal().inodeOf(folder); result == 0 && parent) {
        journal().add("remove " + number(*parent) + " " + name);
    }
    errno = reason;
    return result;
}

int fsync(int descriptor) {
    return flushAndAdd("fsync", descriptor, "flush");
}

int syncfs(int descriptor) noexcept {
    return flushAndAdd("syncfs", descriptor, "flush-all");
}
}
