#pragma once

#include <optional>
#include <string>

namespace vxtest {

/// Gives the calling process, and all processes that it starts later, an empty /opt, /tmp and /media in
/// memory. So tests can use the compiled-in paths in parallel and leave nothing behind. The build tree, the
/// source tree and the working directory stay visible if they are below one of the three.
///
/// Result: empty on success, otherwise the reason. Must be called first in main, because the process must
/// have only one thread. Works as root, or where user namespaces are allowed.
[[nodiscard]] std::optional<std::string> enterPrivateFilesystem();

}  // namespace vxtest
