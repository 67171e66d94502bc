#pragma once

#include <string_view>
#include <vector>

namespace vxfuzz {

/// A reader of bytes that may come from anybody, and what must hold whatever the bytes are. Each is a
/// constant of its own source; the program has those whose sources it is made of.
class Target {
 public:
    /// `read` takes the bytes, and ends the program when something does not hold.
    Target(std::string_view name, void (*read)(std::string_view bytes));

    std::string_view name() const { return name_; }
    void run(std::string_view bytes) const { read_(bytes); }

    /// All that the program has.
    static const std::vector<const Target*>& all();

 private:
    std::string_view name_;
    void (*read_)(std::string_view bytes);
};

/// Says what did not hold and ends the program, unless it holds.
void require(bool holds, std::string_view what);

}  // namespace vxfuzz
