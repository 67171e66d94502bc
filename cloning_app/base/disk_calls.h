#pragma once

#include <sys/types.h>

#include <cstddef>
#include <cstdint>
#include <functional>

namespace vxclone {

/// The system calls that write a package to a disk. By default they are the real ones; tests pass their own
/// to make one fail. Each sets errno on failure, as the originals do.
struct DiskCalls {
    /// write(2)
    std::function<ssize_t(int descriptor, const void* data, std::size_t size)> write;
    /// fsync(2). A file system that cannot flush a single folder is flushed completely.
    std::function<int(int descriptor)> flush;
    /// Starts writing a file's data to the disk. Data of an earlier call for this file is written before.
    /// This is a hint; a failure has no consequence.
    std::function<void(int descriptor)> startFlush;
    /// Waits until a file's data is written; it may still be in the disk's cache. Returns 0, or -1 if the
    /// disk has refused some of it.
    std::function<int(int descriptor)> awaitFlush;
    /// syncfs(2): everything on the folder's file system, including files, folders and the disk's cache
    std::function<int(int folder)> flushAll;
    /// renameat2(2), both names in the folder `directory`
    std::function<int(int directory, const char* from, const char* to, unsigned flags)> rename;
    /// mkdirat(2), with the mode that the umask leaves
    std::function<int(int directory, const char* name)> makeFolder;
};

/// The real system calls.
DiskCalls realDiskCalls();

/// Receives the part of the bytes that is written, from 0 to 1.
using TellWritten = std::function<void(double part)>;

/// The same calls. After each write they report which part of `bytes` they have written so far.
DiskCalls countingWrites(const DiskCalls& calls, std::uint64_t bytes, TellWritten tell);

}  // namespace vxclone
