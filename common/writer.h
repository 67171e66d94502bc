#pragma once

#include <ostream>
#include <string_view>

#include "common/json_text.h"
#include "common/printable.h"

namespace vxcommon {

/// Writes what may be shown on a stream, which must outlive it. Our programs write on their standard streams
/// by it alone, so that no text gets there that is not printable.
class Writer {
 public:
    Writer(std::ostream& stream) : stream_(&stream) {}

    void write(PrintableView text);
    /// The text and a line feed, in one piece.
    void line(PrintableView text);
    /// The document and a line feed, in one piece.
    void line(const JsonText& document);
    void flush();

 private:
    std::ostream* stream_;
};

Writer standardOutput();
Writer standardError();

/// Writes on standard output what a program may read there: as it is. A terminal gets the lines of it
/// printable, with their colour codes where `colours` says so and the terminal wants any.
void writeContent(std::string_view content, bool colours = false);

/// Writes out what standard output still holds. Result: 0, or the system's reason (errno) of the first
/// failure when not all that was ever written there is out, as on a full disk.
int finishStandardOutput();

}  // namespace vxcommon
