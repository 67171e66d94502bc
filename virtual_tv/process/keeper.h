#pragma once

#include <sys/types.h>

#include <array>

namespace vxtv {

// A keeper is a small process beside the sessions. It starts one child, the service, and ends it when the
// last session has ended, even if that was killed. All functions here may be called in a child of a process
// that had threads.

inline constexpr int kFirstKept = 3;
inline constexpr std::size_t kKeptDescriptors = 4;

/// Drops everything of the caller: terminal, directory, signals, and every descriptor except these, which
/// become kFirstKept and the following numbers, in order. From now on this process ends when its child ends.
void becomeKeeper(const char* name, const std::array<int, kKeptDescriptors>& kept);

/// In the keeper: waits for the exclusive lock, then ends the child and waits for its end.
[[noreturn]] void keepUntilLocked(int lock, pid_t child);

}  // namespace vxtv
