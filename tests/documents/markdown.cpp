#include "tests/documents/markdown.h"

#include <algorithm>
#include <cctype>
#include <optional>
#include <sstream>

namespace vxtest {

namespace {

constexpr std::string_view kFence = "```";
constexpr std::string_view kMarkBegin = "<!-- check: ";
constexpr std::string_view kMarkEnd = " -->";

std::string withoutIndentation(const std::string& line, std::size_t most) {
    const std::size_t spaces = std::min(line.find_first_not_of(' '), line.size());
    return line.substr(std::min(spaces, most));
}

/// The text of a mark; empty if the line is something else.
std::optional<std::string> markOf(const std::string& line) {
    if (!line.starts_with(kMarkBegin) || !line.ends_with(kMarkEnd)) return std::nullopt;
    return line.substr(kMarkBegin.size(), line.size() - kMarkBegin.size() - kMarkEnd.size());
}

/// The anchor of a heading, as Markdown viewers make it: lower case, "-" for blanks, and no punctuation.
std::string anchorOf(const std::string& heading) {
    std::string anchor;
    for (const char character : heading.substr(heading.find_first_not_of("# "))) {
        const auto byte = static_cast<unsigned char>(character);
        if (character == ' ') {
            anchor += '-';
        } else if (std::isalnum(byte) != 0 || character == '-' || character == '_') {
            anchor += static_cast<char>(std::tolower(byte));
        }
    }
    return anchor;
}

class Reader {
 public:
    explicit Reader(const std::string& name) { read_.name = name; }

    void take(const std::string& line) {
        ++line_;
        inBlock_ ? takeInside(line) : takeOutside(line);
    }

    Markdown end() {
        if (inBlock_) complain(read_.blocks.back().line, "this block has no end");
        forgetMarks();
        return std::move(read_);
    }

 private:
    void takeInside(const std::string& line) {
        Block& block = read_.blocks.back();
        const std::string shown = withoutIndentation(line, indentation_);
        if (shown == kFence) {
            inBlock_ = false;
        } else {
            block.lines.push_back(shown);
        }
    }

    void takeOutside(const std::string& line) {
        const std::string shown = withoutIndentation(line, line.size());
        if (shown.starts_with(kFence)) {
            indentation_ = line.size() - shown.size();
            read_.blocks.push_back({line_, shown.substr(kFence.size()), {}, std::move(marks_)});
            marks_.clear();
            inBlock_ = true;
        } else if (auto mark = markOf(shown)) {
            marks_.push_back({line_, std::move(*mark)});
        } else {
            forgetMarks();
            if (shown.starts_with('#')) read_.anchors.push_back(anchorOf(shown));
            takeText(shown);
            takeLinks(shown);
            if (shown.starts_with("<!--")) complain(line_, "this comment is no mark that the check reads");
        }
    }

    /// A span may continue in the next line of its paragraph.
    void takeText(const std::string& line) {
        if (line.empty()) inSpan_ = false;
        if (inSpan_) read_.spans.back().text += ' ';
        for (const char character : line) {
            if (character == '`') {
                inSpan_ = !inSpan_;
                if (inSpan_) read_.spans.push_back({line_, ""});
            } else if (inSpan_) {
                read_.spans.back().text += character;
            }
        }
    }

    void takeLinks(const std::string& line) {
        for (std::size_t begin = 0; (begin = line.find("](", begin)) != std::string::npos;) {
            begin += 2;
            read_.links.push_back({line_, line.substr(begin, line.find(')', begin) - begin)});
        }
    }

    void forgetMarks() {
        for (const Mark& mark : marks_) complain(mark.line, "this mark stands before no block");
        marks_.clear();
    }

    void complain(int line, const std::string& text) { read_.problems.push_back(at(read_.name, line, text)); }

    Markdown read_;
    std::vector<Mark> marks_;
    std::size_t indentation_ = 0;
    int line_ = 0;
    bool inBlock_ = false;
    bool inSpan_ = false;
};

}  // namespace

Markdown readMarkdown(const std::string& name, const std::string& text) {
    Reader reader(name);
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) reader.take(line);
    return reader.end();
}

std::string at(const std::string& name, int line, const std::string& text) {
    return name + ":" + std::to_string(line) + ": " + text;
}

}  // namespace vxtest
