#pragma once

#include <filesystem>

#include "virtual_tv/base/error.h"

namespace vxtv {

/// Removes the television, even if it is damaged or of another version, if its tv.db shows that it is one. No
/// link is followed, not even the folder itself.
///
/// Errors: NotATelevision, Busy while a session runs in it, Io. Then nothing was removed. If the removal
/// itself fails halfway, the sentence names the place of the rest.
Result<void> destroyTelevision(const std::filesystem::path& path);

}  // namespace vxtv
