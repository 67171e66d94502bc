#pragma once

#include <atomic>

namespace vxclone {

/// Tells a long operation to stop. May be raised in a signal handler and read from any thread.
class StopFlag {
 public:
    /// Stores the signal. The first one is kept.
    void raise(int signal) {
        int none = 0;
        signal_.compare_exchange_strong(none, signal);
    }
    bool raised() const { return signal() != 0; }
    /// The signal, or 0 if there was none.
    int signal() const { return signal_.load(); }

 private:
    static_assert(std::atomic<int>::is_always_lock_free);
    std::atomic<int> signal_{0};
};

}  // namespace vxclone
