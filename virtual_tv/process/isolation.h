#pragma once

#include <sys/types.h>

#include <optional>
#include <string_view>

#include "virtual_tv/base/error.h"

namespace vxtv {

/// How a command gets to see the television's directories.
enum class Isolation {
    Root,      ///< a mount namespace, made with the rights of root
    User,      ///< the same inside a user namespace: no rights needed
    RealPaths  ///< no namespace: links at the machine's own paths
};

/// The line for standard error that says which way was taken.
std::string_view describe(Isolation isolation);

/// The way `wish` names if this machine allows it, or without a wish the first of the three that it allows.
/// Each is tried in a process of its own, so the caller stays as it is. RealPaths is always possible here;
/// whether the paths are free is seen when they are taken.
/// On failure (NoIsolation) the sentence says why the wish cannot be granted.
Result<Isolation> chooseIsolation(std::optional<Isolation> wish);

/// Forks a child into new namespaces: mounts and processes, whose first one it is; for RealPaths it is a
/// plain fork. The child must call `settleIn` before anything else and must end with _exit.
/// Result: as fork(2), -1 with errno on failure. Only one thread may run in the caller.
pid_t forkInto(Isolation isolation);

/// In the child: takes over the caller's user and group in a user namespace, and cuts the mounts off from
/// those of the machine. Result: 0, or the error number.
int settleIn(Isolation isolation);

/// Puts the calling process itself into a private mount namespace: as root, else in a user namespace.
/// On failure (NoIsolation) it stays where it was. Only one thread may run in the caller.
Result<void> enterMountNamespace();

}  // namespace vxtv
