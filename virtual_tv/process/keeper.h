#pragma once

#include <sys/types.h>

#include <array>

namespace vxtv {

// A keeper is a small process beside the sessions. It starts one child, the service, and ends it when the
// last session has gone, however that went. All of this may be done in a child of a process that had threads.

inline constexpr int kFirstKept = 3;
inline constexpr std::size_t kKeptDescriptors = 4;

/// Lets go of all that the caller has: terminal, directory, signals, and every descriptor but these, which
/// become kFirstKept and so on, in their order. From now on the end of a child ends this process.
void becomeKeeper(const char* name, const std::array<int, kKeptDescriptors>& kept);

/// In the keeper: waits for the lock exclusively, ends the child and waits for that.
[[noreturn]] void keepUntilLocked(int lock, pid_t child);

}  // namespace vxtv
