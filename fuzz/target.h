#pragma once

#include <functional>
#include <string_view>
#include <vector>

namespace vxfuzz {

/// A reader of untrusted bytes, and the properties that must hold for all bytes. Each target is a constant in
/// its own source. A program has the targets whose sources it is linked with.
class Target {
 public:
    /// `read` takes the bytes, and ends the program if a property does not hold.
    Target(std::string_view name, void (*read)(std::string_view bytes));

    std::string_view name() const { return name_; }
    /// Reads the bytes, and requires that this does not take too long.
    void run(std::string_view bytes) const;

    /// All targets of the program.
    static const std::vector<const Target*>& all();

 private:
    std::string_view name_;
    void (*read_)(std::string_view bytes);
};

/// Ends the program with the text if `holds` is false.
void require(bool holds, std::string_view what);

/// Requires that a text for people, such as the reason of a refusal, is not empty, is one line, and has no
/// deceptive characters.
void requireShowable(std::string_view text);

/// The time is checked only for inputs of at least this size.
inline constexpr std::size_t kLargeInput = std::size_t{16} << 10U;

/// Requires that the work with a large input takes at most a fixed processor time plus a time for each byte.
/// Both limits are generous, hundreds of times what the readers take, so only a time that grows faster than
/// the input exceeds them.
void requireTimely(std::size_t bytes, const std::function<void()>& work);

}  // namespace vxfuzz
