#pragma once

#include <sys/types.h>

#include <optional>
#include <string_view>

#include "virtual_tv/base/error.h"

namespace vxtv {

/// The way in which a command sees the television's directories.
enum class Isolation {
    Root,      ///< a mount namespace, made with the rights of root
    User,      ///< the same inside a user namespace: no rights needed
    RealPaths  ///< no namespace, but links at the machine's own paths
};

/// The line for standard error that names the chosen way.
std::string_view describe(Isolation isolation);

/// The way that `wish` names if this machine allows it, or without a wish the first of the three that it
/// allows. Each is tried in a process of its own, so the caller does not change. RealPaths always counts as
/// possible here; whether the paths are free is checked later. On failure (NoIsolation) the sentence says
/// why.
Result<Isolation> chooseIsolation(std::optional<Isolation> wish);

/// Forks a child into new mount and process namespaces, in which it is the first process. For RealPaths it is
/// a plain fork. The child must first call `settleIn` and must end with _exit. Result: as fork(2), -1 with
/// errno on failure. The caller must have only one thread.
pid_t forkInto(Isolation isolation);

/// In the child: maps the caller's user and group in a user namespace, and makes its mounts private. Result:
/// 0, or the error number.
int settleIn(Isolation isolation);

/// Moves the calling process itself into a private mount namespace: as root directly, otherwise in a user
/// namespace. On failure (NoIsolation) nothing changes. The process must have only one thread.
Result<void> enterMountNamespace();

}  // namespace vxtv
