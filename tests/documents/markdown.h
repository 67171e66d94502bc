#pragma once

#include <string>
#include <vector>

namespace vxtest {

/// What a person says of a block to this check, in a comment that no reader sees: `<!-- check: TEXT -->`.
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

/// What stands between backquotes in the text.
struct Span {
    int line = 0;  ///< where it begins
    std::string text;
};

/// A link, `[TEXT](TARGET)`.
struct Link {
    int line = 0;
    std::string target;
};

/// What this check reads of a document in Markdown.
struct Markdown {
    std::string name;
    std::vector<Block> blocks;
    std::vector<Span> spans;
    std::vector<Link> links;
    std::vector<std::string> anchors;   ///< by which a link names a heading: "how-it-works"
    std::vector<std::string> problems;  ///< sentences, each with the place
};

/// Reads a document. `name` is what the sentences call it.
Markdown readMarkdown(const std::string& name, const std::string& text);

/// "NAME:LINE: TEXT", as compilers name a place.
std::string at(const std::string& name, int line, const std::string& text);

}  // namespace vxtest
