#pragma once

#include <filesystem>

#include "virtual_tv/base/error.h"

namespace vxtv {

/// Removes the television, also one that is damaged or of another version, as long as its tv.db says whose it
/// is. No link is followed, the folder itself included.
///
/// Errors: NotATelevision, Busy while a session runs in it, Io. Nothing is removed then; but when the removal
/// itself fails on the way, the sentence names where the rest lies.
Result<void> destroyTelevision(const std::filesystem::path& path);

}  // namespace vxtv
