#include "common/writer.h"

#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <iostream>
#include <string>

#include "common/character_width.h"
#include "common/terminal_table.h"

namespace vxcommon {

namespace {

/// The system's reason (errno) of the first failed write to standard output, or 0.
int failedFor = 0;

void noteFailure() {
    failedFor = failedFor != 0 ? failedFor : errno != 0 ? errno : EIO;
}

void put(std::ostream& stream, std::string_view text) {
    if (&stream == &std::cerr) {
        // Writing to standard error flushes standard output, too, and would lose the reason of a failure.
        finishStandardOutput();
    }
    stream << text;
    if (&stream == &std::cout && !stream) {
        noteFailure();
    }
}

constexpr std::string_view kColourStart = "\x1b[";

/// The digits and semicolons of the colour code at the beginning of the text. Empty if the text does not
/// begin with a colour code.
std::string_view colourIn(std::string_view text) {
    if (text.substr(0, kColourStart.size()) != kColourStart) {
        return {};
    }
    text.remove_prefix(kColourStart.size());
    const std::size_t end = text.find_first_not_of("0123456789;");
    return end != std::string_view::npos && text[end] == 'm' ? text.substr(0, end + 1) : std::string_view();
}

/// The text without characters that control a terminal, except line feeds and, with `keepColours`, colour
/// codes.
Printable forTerminal(std::string_view text, bool keepColours) {
    Printable result;
    while (!text.empty()) {
        const std::string_view colour = colourIn(text);
        const std::size_t length =
            colour.empty() ? characterAt(text, 0).bytes : kColourStart.size() + colour.size();
        if (colour.empty()) {
            result += printableLines(text.substr(0, length));
        } else if (keepColours) {
            result += "\x1b[";
            result += printable(colour);
        }
        text.remove_prefix(length);
    }
    return result;
}

}  // namespace

void Writer::write(PrintableView text) {
    put(*stream_, text.text());
}

void Writer::line(PrintableView text) {
    put(*stream_, std::string(text.text()) + '\n');
}

void Writer::line(const JsonText& document) {
    put(*stream_, document.text() + '\n');
}

void Writer::flush() {
    *stream_ << std::flush;
}

Writer standardOutput() {
    return std::cout;
}

Writer standardError() {
    return std::cerr;
}

void writeContent(std::string_view content, bool colours) {
    if (isTerminal(STDOUT_FILENO)) {
        standardOutput().write(forTerminal(content, colours && wantsColour(STDOUT_FILENO)));
    } else {
        put(std::cout, content);
    }
}

int finishStandardOutput() {
    if (std::fflush(stdout) != 0) {
        noteFailure();
    }
    return failedFor;
}

}  // namespace vxcommon
