#pragma once

#include <string>

#include "tests/support/machine/process.h"

namespace vxtest {

/// A program at its own terminal, as a person would run it. The destructor kills it if it is still running.
class Terminal {
 public:
    Terminal(const Program& program, unsigned short columns);
    Terminal(const Terminal&) = delete;
    Terminal& operator=(const Terminal&) = delete;
    ~Terminal();

    /// Everything that was written to the terminal so far, with its control sequences.
    const std::string& text() const { return text_; }
    /// Waits until the text holds `wanted`. False when the program or its time limit ends first.
    bool waitFor(const std::string& wanted);
    void type(const std::string& keys) const;
    /// Waits for the program's end. Result: its exit status as a shell gives it;
    /// 137 when its time was over and it was killed.
    int wait();

 private:
    bool readMore();

    std::string text_;
    int master_ = -1;
    pid_t process_ = -1;
    std::chrono::steady_clock::time_point deadline_;
};

inline constexpr const char* kCtrlC = "\x03";

}  // namespace vxtest
