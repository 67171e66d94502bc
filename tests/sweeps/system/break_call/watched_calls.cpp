#include "tests/sweeps/system/break_call/watched_calls.h"

#include <fcntl.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <unistd.h>

#include <algorithm>
#include <climits>
#include <filesystem>
#include <system_error>

namespace vxtest {

namespace {

constexpr std::array kWatched = {
    WatchedCall{SYS_open, "open", NamedBy::Path},
    WatchedCall{SYS_openat, "openat", NamedBy::FolderAndPath},
    WatchedCall{SYS_read, "read", NamedBy::Descriptor},
    WatchedCall{SYS_pread64, "pread64", NamedBy::Descriptor},
    WatchedCall{SYS_write, "write", NamedBy::Descriptor},
    WatchedCall{SYS_writev, "writev", NamedBy::Descriptor},
    WatchedCall{SYS_pwrite64, "pwrite64", NamedBy::Descriptor},
    WatchedCall{SYS_close, "close", NamedBy::Descriptor},
    WatchedCall{SYS_fsync, "fsync", NamedBy::Descriptor},
    WatchedCall{SYS_fdatasync, "fdatasync", NamedBy::Descriptor},
    WatchedCall{SYS_syncfs, "syncfs", NamedBy::Descriptor},
    WatchedCall{SYS_rename, "rename", NamedBy::TwoPaths},
    WatchedCall{SYS_renameat, "renameat", NamedBy::TwoFoldersAndPaths},
    WatchedCall{SYS_renameat2, "renameat2", NamedBy::TwoFoldersAndPaths},
    WatchedCall{SYS_mkdir, "mkdir", NamedBy::Path},
    WatchedCall{SYS_mkdirat, "mkdirat", NamedBy::FolderAndPath},
    WatchedCall{SYS_rmdir, "rmdir", NamedBy::Path},
    WatchedCall{SYS_unlink, "unlink", NamedBy::Path},
    WatchedCall{SYS_unlinkat, "unlinkat", NamedBy::FolderAndPath},
    WatchedCall{SYS_stat, "stat", NamedBy::Path},
    WatchedCall{SYS_lstat, "lstat", NamedBy::Path},
    WatchedCall{SYS_fstat, "fstat", NamedBy::Descriptor},
    WatchedCall{SYS_newfstatat, "newfstatat", NamedBy::FolderAndPath},
    WatchedCall{SYS_statx, "statx", NamedBy::FolderAndPath},
    WatchedCall{SYS_statfs, "statfs", NamedBy::Path},
    WatchedCall{SYS_fstatfs, "fstatfs", NamedBy::Descriptor},
    WatchedCall{SYS_access, "access", NamedBy::Path},
    WatchedCall{SYS_faccessat2, "faccessat2", NamedBy::FolderAndPath},
    WatchedCall{SYS_readlink, "readlink", NamedBy::Path},
    WatchedCall{SYS_getdents64, "getdents64", NamedBy::Descriptor},
    WatchedCall{SYS_chmod, "chmod", NamedBy::Path},
    WatchedCall{SYS_fchmod, "fchmod", NamedBy::Descriptor},
    WatchedCall{SYS_fchmodat, "fchmodat", NamedBy::FolderAndPath},
    WatchedCall{SYS_truncate, "truncate", NamedBy::Path},
    WatchedCall{SYS_ftruncate, "ftruncate", NamedBy::Descriptor},
    WatchedCall{SYS_fallocate, "fallocate", NamedBy::Descriptor},
    WatchedCall{SYS_utimensat, "utimensat", NamedBy::FolderAndPath},
    WatchedCall{SYS_copy_file_range, "copy_file_range", NamedBy::FirstAndThird, 4},
    WatchedCall{SYS_flock, "flock", NamedBy::Descriptor},
    WatchedCall{SYS_fcntl, "fcntl", NamedBy::Descriptor},
    WatchedCall{SYS_lseek, "lseek", NamedBy::Descriptor},
    WatchedCall{SYS_mmap, "mmap", NamedBy::Nothing},
    WatchedCall{SYS_socket, "socket", NamedBy::Nothing},
    WatchedCall{SYS_connect, "connect", NamedBy::Nothing},
    WatchedCall{SYS_sendmsg, "sendmsg", NamedBy::Nothing},
    WatchedCall{SYS_recvmsg, "recvmsg", NamedBy::Nothing},
    WatchedCall{SYS_getrandom, "getrandom", NamedBy::Nothing},
    WatchedCall{SYS_pipe2, "pipe2", NamedBy::Nothing},
};

std::string textAt(pid_t thread, std::uint64_t address) {
    std::string text;
    std::array<char, 256> chunk{};
    while (text.size() < PATH_MAX) {
        // Only up to the end of a page, because the next one may not exist.
        const std::size_t size = chunk.size() - (address + text.size()) % chunk.size();
        const iovec here{chunk.data(), size};
        const iovec there{reinterpret_cast<void*>(address + text.size()), size};
        const ssize_t got = process_vm_readv(thread, &here, 1, &there, 1, 0);
        if (got <= 0) {
            return {};
        }
        const char* const begin = chunk.data();
        const char* const end = std::find(begin, begin + got, '\0');
        text.append(begin, end);
        if (end != begin + got) {
            return text;
        }
    }
    return text;
}

std::string linkIn(pid_t thread, const std::string& name) {
    std::error_code none;
    return std::filesystem::read_symlink("/proc/" + std::to_string(thread) + "/" + name, none).string();
}

std::string pathOfDescriptor(pid_t thread, std::uint64_t descriptor) {
    const int number = static_cast<int>(descriptor);
    return linkIn(thread, number == AT_FDCWD ? "cwd" : "fd/" + std::to_string(number));
}

std::string pathBelow(pid_t thread, std::uint64_t folder, std::uint64_t address) {
    const std::string path = textAt(thread, address);
    if (!path.empty() && path.front() == '/') {
        return path;
    }
    const std::string from = pathOfDescriptor(thread, folder);
    return path.empty() ? from : from + "/" + path;
}

}  // namespace

const WatchedCall* findWatchedCall(std::uint64_t number) {
    const auto* const found = std::find_if(
        kWatched.begin(), kWatched.end(),
        [number](const WatchedCall& call) { return static_cast<std::uint64_t>(call.number) == number; });
    return found == kWatched.end() ? nullptr : found;
}

std::vector<std::string> pathsOf(const WatchedCall& call, const std::array<std::uint64_t, 6>& arguments,
                                 pid_t thread) {
    constexpr auto kWorkingFolder = static_cast<std::uint64_t>(AT_FDCWD);
    switch (call.namedBy) {
        case NamedBy::Descriptor:
            return {pathOfDescriptor(thread, arguments[0])};
        case NamedBy::Path:
            return {pathBelow(thread, kWorkingFolder, arguments[0])};
        case NamedBy::FolderAndPath:
            return {pathBelow(thread, arguments[0], arguments[1])};
        case NamedBy::TwoPaths:
            return {pathBelow(thread, kWorkingFolder, arguments[0]),
                    pathBelow(thread, kWorkingFolder, arguments[1])};
        case NamedBy::TwoFoldersAndPaths:
            return {pathBelow(thread, arguments[0], arguments[1]),
                    pathBelow(thread, arguments[2], arguments[3])};
        case NamedBy::FirstAndThird:
            return {pathOfDescriptor(thread, arguments[0]), pathOfDescriptor(thread, arguments[2])};
        case NamedBy::Nothing:
            break;
    }
    return {};
}

}  // namespace vxtest
