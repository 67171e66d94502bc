#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>

namespace vxfuzz {

/// The fuzzer's bytes, taken from the front. After their end everything is empty or 0.
class Input {
 public:
    explicit Input(std::string_view bytes) : left_(bytes) {}

    bool isEmpty() const { return left_.empty(); }

    unsigned char byte() {
        const std::string_view first = take(1);
        return first.empty() ? 0 : static_cast<unsigned char>(first.front());
    }
    std::string_view take(std::size_t count) {
        const std::string_view taken = left_.substr(0, count);
        left_.remove_prefix(taken.size());
        return taken;
    }
    /// Up to the mark, which is dropped, or to the end.
    std::string_view until(char mark) {
        const std::string_view taken = take(std::min(left_.find(mark), left_.size()));
        take(1);
        return taken;
    }
    std::string_view rest() { return take(left_.size()); }

 private:
    std::string_view left_;
};

/// The text up to its first NUL, as in a C string.
inline std::string upToNul(std::string_view text) {
    return std::string(text.substr(0, text.find('\0')));
}

}  // namespace vxfuzz
