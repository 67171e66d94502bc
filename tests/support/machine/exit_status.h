#pragma once

#include <sys/wait.h>

namespace vxtest {

/// The exit statuses of vxclone, as documented in its manual.
namespace ended {
inline constexpr int kDone = 0;
inline constexpr int kIncomplete = 1;
inline constexpr int kUsage = 2;
inline constexpr int kNoPackage = 3;
inline constexpr int kDoesNotFit = 4;
inline constexpr int kAltered = 5;
inline constexpr int kStick = 6;
inline constexpr int kNoKey = 7;
inline constexpr int kInterrupted = 8;
inline constexpr int kBusy = 9;
inline constexpr int kPlatformFailed = 10;
inline constexpr int kHighest = kPlatformFailed;
}  // namespace ended

inline constexpr int kSignalBase = 128;
/// Of a program that could not be started.
inline constexpr int kCannotStart = 127;

/// The exit status of a process, as in a shell, from the result of waitpid.
inline int exitStatusOf(int waited) {
    return WIFSIGNALED(waited) ? kSignalBase + WTERMSIG(waited) : WEXITSTATUS(waited);
}

}  // namespace vxtest
