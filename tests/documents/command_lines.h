#pragma once

#include <string>
#include <vector>

#include "packaging/cli_tree.h"
#include "tests/documents/markdown.h"

namespace vxtest {

/// Compares the command lines in the text of a document, `program verb --option`, and single options,
/// `--option`, with those of the programs.
///
/// Result: a sentence with the place for each verb and each option that no program has.
std::vector<std::string> unknownCommandLines(const Markdown& document,
                                             const std::vector<vxpages::CliVerb>& programs);

/// Compares a block of a program's command lines with those that the program has. Each command line begins a
/// line, and its continuation lines are indented. A verb must occur once, with every option of its own except
/// `--help`.
///
/// Result: a sentence with the place for each difference.
std::vector<std::string> synopsisDifferences(const std::string& document, const Block& block,
                                             const vxpages::CliVerb& program);

}  // namespace vxtest
