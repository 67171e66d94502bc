#pragma once

#include <array>
#include <streambuf>

namespace vxcommon {

/// Writes everything from std::cout to the standard output of the process, and remembers the reason of a
/// failure. Threads: one at a time. There is at most one object in a process.
class StandardOutput final : private std::streambuf {
 public:
    StandardOutput();
    StandardOutput(const StandardOutput&) = delete;
    StandardOutput& operator=(const StandardOutput&) = delete;
    /// Gives std::cout its previous buffer again.
    ~StandardOutput() override;

    /// Writes out what is still buffered. Result: 0 if everything ever written to std::cout was written out;
    /// otherwise the system's reason (errno) of the first failure. Output after that failure was dropped.
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
