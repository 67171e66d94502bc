#pragma once

#include <filesystem>
#include <string>

namespace vxpages {

/// Whether there is such a program on this machine.
bool isInstalled(const std::string& tool);

// `share` is the folder below which the completions of both programs lie, as an installation has them.

/// Types the line into a bash of its own at a terminal, and asks for all completions of its last word.
/// Result: the line with all of them in place of that word. `breaks` are the characters that part words
/// there; empty: as bash has them.
std::string completedByBash(const std::filesystem::path& share, const std::string& line,
                            const std::string& breaks = "");

/// Types the line into a zsh of its own at a terminal and presses the Tab key. Result: what is offered,
/// sorted, a blank between each two; or what zsh said in error.
std::string offeredByZsh(const std::filesystem::path& share, const std::string& line);

}  // namespace vxpages
