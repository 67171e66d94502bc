#pragma once

#include <sys/types.h>

#include "virtual_tv/base/descriptor.h"

namespace vxtv {

/// The terminal a session was started from. An interactive shell takes the terminal's foreground over, and
/// cannot give it back: the group that had it lies outside of the shell's process namespace. So whoever
/// started the session takes it back with the end of this object.
class Terminal {
 public:
    Terminal();
    Terminal(const Terminal&) = delete;
    Terminal& operator=(const Terminal&) = delete;
    ~Terminal();

    /// Whether there is a terminal, and the calling process' group was in its foreground.
    bool isOurs() const { return ours_; }

    /// Makes the calling process a group of its own, in the foreground if it was ours.
    void handToSelf() const;

 private:
    Descriptor terminal_;
    pid_t group_;
    bool ours_;
};

}  // namespace vxtv
