#pragma once

#include <optional>
#include <string>

namespace vxtest {

/// Gives the calling process, and every process it starts from then on, an empty /opt, /tmp and /media of its
/// own, in memory, so that tests may work on the compiled-in paths, side by side and without a trace. The
/// build tree, the source tree and the working directory stay in sight if they lie below one of the three.
///
/// Result: nothing on success, else the sentence that says why. Call it first in main: only one thread may
/// run. Works as root, else where user namespaces are allowed.
[[nodiscard]] std::optional<std::string> enterPrivateFilesystem();

}  // namespace vxtest
