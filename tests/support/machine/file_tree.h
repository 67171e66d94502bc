#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <string_view>

namespace vxtest {

/// The whole content of a file. A file that cannot be read throws std::filesystem::filesystem_error, which
/// fails the test that asked.
std::string readFile(const std::filesystem::path& file);

/// Makes or replaces a file, and the directories above it. Throws as `readFile`.
void writeFile(const std::filesystem::path& file, std::string_view content);

/// Everything below a directory for an exact comparison. The key is the relative path, with a slash at its
/// end for a directory. The value is a file's content, "-> TARGET" for a link, and "" for a directory.
using FileTree = std::map<std::string, std::string>;
FileTree snapshot(const std::filesystem::path& directory);

}  // namespace vxtest
