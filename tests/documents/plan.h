#pragma once

#include <string>
#include <variant>
#include <vector>

#include "tests/documents/markdown.h"

namespace vxtest {

/// The output that a document quotes for a command.
struct Quotation {
    int line = 0;
    std::vector<std::string> lines;
};

/// A command that is run.
struct Command {
    int line = 0;
    std::string text;
    int status = 0;        ///< that it ends with
    bool stopped = false;  ///< it does not end by itself: it is stopped as by Ctrl-C
    std::vector<Quotation> quotations;
};

/// A block that is saved as a file for later commands.
struct SavedFile {
    int line = 0;
    std::string path;
    std::string content;
};

using Step = std::variant<Command, SavedFile>;

/// The steps for a document, in order.
struct Plan {
    std::string name;
    std::vector<Step> steps;
    std::vector<std::string> leftOut;   ///< what is not run, and why: a sentence each, with the place
    std::vector<std::string> problems;  ///< blocks and marks that make no sense: sentences with the place
};

/// Reads the blocks and their marks, which docs/testing.md describes.
Plan planOf(const Markdown& document);

}  // namespace vxtest
