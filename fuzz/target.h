#pragma once

#include <functional>
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
    /// Reads the bytes, and requires that it is timely.
    void run(std::string_view bytes) const;

    /// All that the program has.
    static const std::vector<const Target*>& all();

 private:
    std::string_view name_;
    void (*read_)(std::string_view bytes);
};

/// Says what did not hold and ends the program, unless it holds.
void require(bool holds, std::string_view what);

/// What a person is shown, such as why something is refused: there is a text, in one line, and each character
/// of it is seen for what it is.
void requireShowable(std::string_view text);

/// Below so many bytes nobody looks at the time.
inline constexpr std::size_t kLargeInput = std::size_t{16} << 10U;

/// The work with so many bytes, where they are many, takes no more of the processor's time than a fixed
/// amount and an amount for each byte. Both are generous, hundreds of times what the readers take, so that
/// only time that grows faster than the input reaches them.
void requireTimely(std::size_t bytes, const std::function<void()>& work);

}  // namespace vxfuzz
