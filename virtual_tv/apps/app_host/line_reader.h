#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace vxtv {

/// Splits a stream of output into lines. A very long line is passed on in pieces.
class LineReader {
 public:
    using Take = std::function<void(std::string_view line)>;
    explicit LineReader(Take take) : take_(std::move(take)) {}

    /// Reads the available bytes from `descriptor`, which is non-blocking. False at its end.
    bool readFrom(int descriptor);
    /// Passes on the rest after the last line end.
    void finish();

 private:
    void takeApart();

    Take take_;
    std::string text_;
};

}  // namespace vxtv
