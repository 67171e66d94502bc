#pragma once

#include <filesystem>
#include <string>

namespace vxpages {

/// Whether this program is installed.
bool isInstalled(const std::string& tool);

// `share` is the folder with the completions of both programs, as in an installation.

/// Types the line into a bash at a terminal, and asks for all completions of its last word. Result: the line
/// with all of them in place of that word. `breaks` are the characters that separate words; if empty, bash's
/// default.
std::string completedByBash(const std::filesystem::path& share, const std::string& line,
                            const std::string& breaks = "");

/// Types the line into a zsh at a terminal and presses the Tab key. Result: the offered words, sorted and
/// separated by blanks, or zsh's error.
std::string offeredByZsh(const std::filesystem::path& share, const std::string& line);

}  // namespace vxpages
