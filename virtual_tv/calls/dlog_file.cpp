#include "virtual_tv/calls/dlog_file.h"

#include <fmt/format.h>
#include <unistd.h>

#include <algorithm>
#include <string>

#include "virtual_tv/calls/line_file.h"

namespace vxtv {

namespace {

constexpr std::string_view kLineEnds = "\r\n";
// The letters of the priorities 0 (unknown) and 1 (default) up to 8 (silent).
constexpr std::string_view kPriorityLetters = "??VDIWEFS";

char letterOf(int priority) {
    const bool known = priority >= 0 && priority < static_cast<int>(kPriorityLetters.size());
    return known ? kPriorityLetters[static_cast<std::size_t>(priority)] : '?';
}

std::string_view withoutLineEnd(std::string_view text) {
    const std::size_t last = text.find_last_not_of(kLineEnds);
    return last == std::string_view::npos ? std::string_view() : text.substr(0, last + 1);
}

}  // namespace

bool DlogFile::append(int priority, std::string_view tag, std::string_view text) {
    constexpr std::int64_t kUsPerMs = 1000;
    constexpr std::int64_t kMsPerSecond = 1000;
    const std::int64_t milliseconds = monotonicMicroseconds() / kUsPerMs;
    std::string line =
        fmt::format("{}.{:03} {} {} {}: {}", milliseconds / kMsPerSecond, milliseconds % kMsPerSecond,
                    getpid(), letterOf(priority), tag, withoutLineEnd(text));
    std::replace_if(
        line.begin(), line.end(), [](char c) { return kLineEnds.find(c) != std::string_view::npos; }, ' ');
    line += '\n';
    return file_.append(line);
}

}  // namespace vxtv
