#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

#include "common/error.h"

namespace vxcommon {

/// The option by which every command of our programs writes for programs.
inline constexpr const char* kJsonOption = "--json";

/// The help with a usage line that names the arguments in the order in which they are typed, those of the
/// commands above included: `vxtv fault DIR add CALL [OPTIONS]`.
class HelpFormatter : public CLI::Formatter {
 public:
    HelpFormatter();
    std::string make_usage(const CLI::App* command, std::string name) const override;
};

/// Does what every command line gets once all its commands are added: `--json` may stand before the command,
/// too, and whatever command has it takes it from there; `json` describes it in the help.
void finishCommandLine(CLI::App& program, const std::string& json);

/// The names of the command's options, "--help" among them.
std::vector<std::string> optionNames(const CLI::App& command);

/// Whether the words of a command line ask for JSON, wherever; what follows a "--" is not looked at.
bool asksForJson(const std::vector<std::string>& words);

/// The words of a command line behind the program's name.
std::vector<std::string> wordsOf(int count, char** arguments);

/// Parses the command line, which runs the callbacks of what is typed there. Result: whether there is
/// anything left to do; there is not after help or the version, which this prints on standard output. Error:
/// one sentence that names what is wrong and the next step, without the program's name in front and a line
/// end.
tl::expected<bool, std::string> parseCommandLine(CLI::App& program, const std::vector<std::string>& words);

}  // namespace vxcommon
