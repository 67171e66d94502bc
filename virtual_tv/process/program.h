#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace vxtv {

/// The file that running `name` would start: `name` itself when it holds a slash, else the first executable
/// of that name on the PATH. Absolute, not resolved. Nothing when there is none on this machine; a television
/// may still have it.
std::optional<std::filesystem::path> findProgram(const std::string& name);

}  // namespace vxtv
