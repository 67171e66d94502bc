#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace vxtv {

/// The file that would be run for `name`: `name` itself if it contains a slash, otherwise the first
/// executable of that name on the PATH. Absolute, with links not resolved. Empty if there is none on this
/// machine; a television may still have it.
std::optional<std::filesystem::path> findProgram(const std::string& name);

}  // namespace vxtv
