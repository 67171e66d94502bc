#pragma once

#include <string>
#include <vector>

#include "packaging/cli_tree.h"
#include "tests/documents/markdown.h"

namespace vxtest {

/// The command lines that a document names in its text, `program verb --option`, and options alone,
/// `--option`, held against those that the programs have.
///
/// Result: a sentence with the place for each verb and each option that no program has.
std::vector<std::string> unknownCommandLines(const Markdown& document,
                                             const std::vector<vxpages::CliVerb>& programs);

/// A block with the command lines of a program, one a line and indented where it goes on, held against those
/// that the program has. A verb stands there once, with every option of its own but `--help`.
///
/// Result: a sentence with the place for each difference.
std::vector<std::string> synopsisDifferences(const std::string& document, const Block& block,
                                             const vxpages::CliVerb& program);

}  // namespace vxtest
