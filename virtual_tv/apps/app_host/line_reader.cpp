#include "virtual_tv/apps/app_host/line_reader.h"

#include <unistd.h>

#include <array>
#include <cerrno>

namespace vxtv {

namespace {

constexpr std::size_t kLongestLine = 4096;

}  // namespace

bool LineReader::readFrom(int descriptor) {
    std::array<char, kLongestLine> part{};
    ssize_t count = 0;
    while ((count = read(descriptor, part.data(), part.size())) > 0 || (count < 0 && errno == EINTR)) {
        text_.append(part.data(), count > 0 ? static_cast<std::size_t>(count) : 0);
        takeApart();
    }
    return count < 0 && errno == EAGAIN;
}

void LineReader::takeApart() {
    std::size_t begin = 0;
    for (std::size_t end = 0; (end = text_.find('\n', begin)) != std::string::npos; begin = end + 1) {
        take_(std::string_view(text_).substr(begin, end - begin));
    }
    text_.erase(0, begin);
    if (text_.size() >= kLongestLine) {
        finish();
    }
}

void LineReader::finish() {
    if (!text_.empty()) {
        take_(text_);
        text_.clear();
    }
}

}  // namespace vxtv
