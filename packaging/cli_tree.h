#pragma once

#include <CLI/CLI.hpp>
#include <map>
#include <string>
#include <vector>

namespace vxpages {

/// An option or an operand of a verb.
struct CliOption {
    std::string shortName;  ///< "-h", or empty
    std::string longName;   ///< "--help", or empty; of an operand the name in the help, "DIR"
    std::string value;      ///< what follows it, as in the help; empty for a flag
    std::string description;
    bool required = false;
    std::vector<std::string> words;  ///< what its comma-separated value is put together from, where known
};

/// A program, or one of its verbs.
struct CliVerb {
    std::string name;
    std::string description;
    std::string footer;
    std::vector<CliOption> options;
    std::vector<CliOption> operands;
    std::vector<CliVerb> verbs;
};

/// What the values of an option are put together from, by the option's long name.
using Words = std::map<std::string, std::vector<std::string>>;

/// The program's command line as it parses it.
CliVerb treeOf(const CLI::App& app, const Words& words);

}  // namespace vxpages
