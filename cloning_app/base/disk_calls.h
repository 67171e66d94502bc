#pragma once

#include <sys/types.h>

#include <cstddef>
#include <cstdint>
#include <functional>

namespace vxclone {

/// The system calls that put a package on a disk, as the system gives them: a caller that wants to see what
/// happens when one of them fails hands in its own. Each sets errno on failure, as the originals do.
struct DiskCalls {
    /// write(2)
    std::function<ssize_t(int descriptor, const void* data, std::size_t size)> write;
    /// fsync(2); a folder on a file system that cannot flush one folder flushes the whole file system.
    std::function<int(int descriptor)> flush;
    /// Begins to write a file's data to the disk, once that is written for which the same was asked before;
    /// advice, whose failure means nothing.
    std::function<void(int descriptor)> startFlush;
    /// Waits until a file's data is written, which the disk may still hold in its own memory; 0, or -1 when
    /// the disk has refused some of it.
    std::function<int(int descriptor)> awaitFlush;
    /// syncfs(2): everything on the file system of the folder, files, folders and the disk's own memory
    std::function<int(int folder)> flushAll;
    /// renameat2(2), both names in the folder `directory`
    std::function<int(int directory, const char* from, const char* to, unsigned flags)> rename;
    /// mkdirat(2), with the mode that the umask leaves
    std::function<int(int directory, const char* name)> makeFolder;
};

/// The real ones.
DiskCalls realDiskCalls();

/// Gets how much of the bytes is written, from 0 to 1.
using TellWritten = std::function<void(double part)>;

/// The same calls, which tell after each write how much of `bytes` all of them have written together.
DiskCalls countingWrites(const DiskCalls& calls, std::uint64_t bytes, TellWritten tell);

}  // namespace vxclone
