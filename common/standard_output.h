#pragma once

#include <array>
#include <streambuf>

namespace vxcommon {

/// Takes what is written on std::cout to the standard output of the process, and remembers why that failed.
/// For one thread at a time; there is one object in a process.
class StandardOutput final : private std::streambuf {
 public:
    StandardOutput();
    StandardOutput(const StandardOutput&) = delete;
    StandardOutput& operator=(const StandardOutput&) = delete;
    /// From here on std::cout is what it was before.
    ~StandardOutput() override;

    /// Writes out what is still held. Result: 0 where all that was ever written on std::cout is out, else the
    /// system's reason (errno) of the first failure. What came after that failure was dropped.
    int finish();

 private:
    static constexpr std::size_t kHeld = 4096;

    int_type overflow(int_type character) override;
    int sync() override;
    void write(const char* text, std::size_t size);

    std::array<char, kHeld> held_{};
    std::streambuf* before_;
    int reason_ = 0;
};

}  // namespace vxcommon
