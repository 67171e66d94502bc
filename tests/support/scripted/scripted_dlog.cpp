#include <cstdarg>
#include <cstdio>
#include <string>
#include <vector>

#include "platform/dlog.h"
#include "tests/support/scripted/scripted_platform.h"

namespace {

std::string formatted(const char* format, va_list arguments) {
    va_list copy;
    va_copy(copy, arguments);
    const int length = std::vsnprintf(nullptr, 0, format, copy);
    va_end(copy);
    std::vector<char> buffer(static_cast<std::size_t>(length) + 1);
    std::vsnprintf(buffer.data(), buffer.size(), format, arguments);
    return {buffer.data(), static_cast<std::size_t>(length)};
}

/// Splits a line of the library into its parts. A line of another form is stored as the message.
void takeApart(const std::string& text, vxtest::LogLine& line) {
    const std::string head = line.source + ": " + line.function + "(" + std::to_string(line.line) + ") > ";
    const std::string placed = "[" + line.place + "] > ";
    const std::string tail = "\x1b[0;m";
    const std::size_t place = text.find(placed, head.size());
    const bool ours = text.compare(0, head.size(), head) == 0 && place != std::string::npos &&
                      text.size() >= place + placed.size() + tail.size() &&
                      text.compare(text.size() - tail.size(), tail.size(), tail) == 0;
    if (!ours) {
        line.message = text;
        return;
    }
    line.colour = text.substr(head.size(), place - head.size());
    const std::size_t begin = place + placed.size();
    line.message = text.substr(begin, text.size() - tail.size() - begin);
}

}  // namespace

int __dlog_print(int log_id, int prio, const char* tag, const char* fmt, ...) {
    vxtest::LogLine line;
    line.logId = log_id;
    line.priority = prio;
    line.tag = tag;

    va_list arguments;
    va_start(arguments, fmt);
    const std::string text = formatted(fmt, arguments);
    va_end(arguments);

    // The first arguments of every line are its source, function, line and place.
    va_start(arguments, fmt);
    line.source = va_arg(arguments, const char*);
    line.function = va_arg(arguments, const char*);
    line.line = va_arg(arguments, int);
    line.place = va_arg(arguments, const char*);
    va_end(arguments);

    takeApart(text, line);
    vxtest::ScriptedPlatform::instance().recordLog(line);
    return 0;
}
