#pragma once

#include <string>
#include <vector>

namespace vxtest {

/// An instruction for this check about a block, in a comment that is invisible for readers: `<!-- check: TEXT
/// -->`.
struct Mark {
    int line = 0;  ///< counted from 1
    std::string text;
};

/// A fenced block of a document.
struct Block {
    int line = 0;  ///< of the fence that opens it
    std::string language;
    std::vector<std::string> lines;
    std::vector<Mark> marks;  ///< directly before it
};

/// The text between backquotes.
struct Span {
    int line = 0;  ///< where it begins
    std::string text;
};

/// A link, `[TEXT](TARGET)`.
struct Link {
    int line = 0;
    std::string target;
};

/// The parts of a Markdown document that this check uses.
struct Markdown {
    std::string name;
    std::vector<Block> blocks;
    std::vector<Span> spans;
    std::vector<Link> links;
    std::vector<std::string> anchors;   ///< by which a link names a heading: "how-it-works"
    std::vector<std::string> problems;  ///< sentences, each with the place
};

/// Reads a document. Messages call it `name`.
Markdown readMarkdown(const std::string& name, const std::string& text);

/// "NAME:LINE: TEXT", as compilers report a place.
std::string at(const std::string& name, int line, const std::string& text);

}  // namespace vxtest
