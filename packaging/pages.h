#pragma once

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "packaging/cli_tree.h"

namespace vxpages {

/// A section of a manual page: terms, each with its text.
struct Section {
    std::string heading;
    std::vector<std::pair<std::string, std::string>> items;
};

/// The content of a program's manual page and completions.
struct Manual {
    CliVerb program;
    std::string version;
    std::string about;              ///< a paragraph or more, parted by empty lines
    std::vector<Section> sections;  ///< after the commands
    std::string seeAlso;            ///< another program's name
};

/// The page for man(1), and the completion functions for bash and zsh.
std::string manPage(const Manual& manual);
std::string bashCompletion(const CliVerb& program);
std::string zshCompletion(const CliVerb& program);

/// A shell function with NAME replaced by the program's name.
std::string withProgramName(std::string text, const std::string& name);
/// The words, separated by blanks.
std::string inOneLine(const std::vector<std::string>& words);

/// Writes all three to their places below `share`. Result: 0, or 1 with a sentence on standard error.
int writePages(const Manual& manual, const std::filesystem::path& share);

}  // namespace vxpages
