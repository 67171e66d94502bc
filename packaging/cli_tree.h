#pragma once

#include <CLI/CLI.hpp>
#include <map>
#include <string>
#include <vector>

namespace vxpages {

/// The values that a shell offers for completion.
struct CliChoice {
    std::vector<std::string> words;  ///< these words
    bool several = false;            ///< any number of the words, separated by commas
    /// A command of the program that lists the values: "settings" for `vxtv settings DIR --json`, where DIR
    /// is the first argument on the line. Empty if there is none.
    std::string asked;
    std::string member;  ///< what each object of the answer has the word in
    bool folders = false;
    bool files = false;
    bool command = false;  ///< another command, with all that may follow it
};

/// An option or an operand of a verb.
struct CliOption {
    std::string shortName;  ///< "-h", or empty
    std::string longName;   ///< "--help", or empty; of an operand the name in the help, "DIR"
    std::string value;      ///< what follows it, as in the help; empty for a flag
    std::string description;
    bool required = false;
    CliChoice choice;
};

/// A program, or one of its verbs.
struct CliVerb {
    std::string name;
    std::string description;
    std::string footer;
    std::vector<CliOption> options;
    std::vector<CliOption> operands;
    std::vector<CliVerb> verbs;
    bool runsAnother = false;  ///< its last operand is a command, and whatever follows is that one's
};

/// The offered values of options and operands, by name. Without an entry here, the name of the value decides:
/// "DIR" is a folder, "FILE" a file, and "auto|root" one of these words.
using Choices = std::map<std::string, CliChoice>;

/// The program's command line, as its parser has it.
CliVerb treeOf(const CLI::App& app, const Choices& choices);

}  // namespace vxpages
