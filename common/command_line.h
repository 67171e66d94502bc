#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

#include "common/error.h"

namespace vxcommon {

/// With this option, every command of our programs writes its output for programs.
inline constexpr const char* kJsonOption = "--json";

/// Help whose usage line shows the arguments in the order in which they are typed, including those of the
/// commands above: `vxtv fault DIR add CALL [OPTIONS]`.
class HelpFormatter : public CLI::Formatter {
 public:
    HelpFormatter();
    std::string make_usage(const CLI::App* command, std::string name) const override;
};

/// Completes a command line after all commands were added: `--json` may then stand before the command, too,
/// and a command that has this option takes it from there. `json` is the help text of the option.
void finishCommandLine(CLI::App& program, const std::string& json);

/// The names of the command's options, "--help" among them.
std::vector<std::string> optionNames(const CLI::App& command);

/// Whether the command line contains the option for JSON, at any place before a "--".
bool asksForJson(const std::vector<std::string>& words);

/// The words of a command line without the program's name.
std::vector<std::string> wordsOf(int count, char** arguments);

/// Parses the command line and runs the callbacks of what it contains. Result: whether there is anything left
/// to do; false after help or the version, which this prints on standard output. Error: one sentence with the
/// mistake and the next step, without the program's name and a line end.
tl::expected<bool, std::string> parseCommandLine(CLI::App& program, const std::vector<std::string>& words);

}  // namespace vxcommon
