#pragma once

#include <sys/types.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace vxtest {

/// The arguments of a system call that name a file.
enum class NamedBy { Descriptor, Path, FolderAndPath, TwoPaths, TwoFoldersAndPaths, FirstAndThird, Nothing };

/// A system call that can be broken.
struct WatchedCall {
    long number;
    const char* name;
    NamedBy namedBy;
    std::size_t sizeArgument = 2;  ///< where the number of bytes stands, of a call that can be shortened
};

/// The call with that number; null if it is not watched.
const WatchedCall* findWatchedCall(std::uint64_t number);

/// The absolute paths of the files of the stopped thread's call. Unknown ones are left out.
std::vector<std::string> pathsOf(const WatchedCall& call, const std::array<std::uint64_t, 6>& arguments,
                                 pid_t thread);

}  // namespace vxtest
