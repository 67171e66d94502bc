#pragma once

#include <ostream>
#include <string_view>

#include "common/json_text.h"
#include "common/printable.h"

namespace vxcommon {

/// Writes printable text to a stream, which must outlive the writer. Our programs write to their standard
/// streams only through it, so that no other text gets there.
class Writer {
 public:
    Writer(std::ostream& stream) : stream_(&stream) {}

    void write(PrintableView text);
    /// Writes the text and a line feed together.
    void line(PrintableView text);
    /// Writes the document and a line feed together.
    void line(const JsonText& document);
    void flush();

 private:
    std::ostream* stream_;
};

Writer standardOutput();
Writer standardError();

/// Writes content for programs to standard output unchanged. On a terminal, its lines are made printable.
/// They keep their colour codes if `colours` is set and the terminal shows colours.
void writeContent(std::string_view content, bool colours = false);

/// Writes out what standard output still buffers. Result: 0, or the system's reason (errno) of the first
/// failure if anything could not be written, for example on a full disk.
int finishStandardOutput();

}  // namespace vxcommon
