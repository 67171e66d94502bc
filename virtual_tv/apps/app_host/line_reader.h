#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace vxtv {

/// Takes a stream of output apart into lines. A line that does not end is handed over in pieces.
class LineReader {
 public:
    using Take = std::function<void(std::string_view line)>;
    explicit LineReader(Take take) : take_(std::move(take)) {}

    /// Reads what `descriptor`, which does not block, has now. False when it is at its end.
    bool readFrom(int descriptor);
    /// Hands over what stands behind the last line end.
    void finish();

 private:
    void takeApart();

    Take take_;
    std::string text_;
};

}  // namespace vxtv
