#pragma once

#include <sys/types.h>

#include "virtual_tv/base/descriptor.h"

namespace vxtv {

/// The terminal from which a session was started. An interactive shell takes over the terminal's foreground.
/// It cannot give it back, because the previous group is outside of the shell's process namespace. So the
/// destructor takes it back.
class Terminal {
 public:
    Terminal();
    Terminal(const Terminal&) = delete;
    Terminal& operator=(const Terminal&) = delete;
    ~Terminal();

    /// Whether there is a terminal and the calling process's group was in its foreground.
    bool isOurs() const { return ours_; }

    /// Makes the calling process a group of its own, and puts it into the foreground if ours was there.
    void handToSelf() const;

 private:
    Descriptor terminal_;
    pid_t group_;
    bool ours_;
};

}  // namespace vxtv
