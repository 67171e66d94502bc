#pragma once

#include <atomic>

namespace vxclone {

/// Tells a long operation that the user wants it to stop. May be raised from a signal handler and read from
/// any thread.
class StopFlag {
 public:
    /// Remembers the signal; the first one stays.
    void raise(int signal) {
        int none = 0;
        signal_.compare_exchange_strong(none, signal);
    }
    bool raised() const { return signal() != 0; }
    /// The signal, or 0 when nobody wants a stop.
    int signal() const { return signal_.load(); }

 private:
    static_assert(std::atomic<int>::is_always_lock_free);
    std::atomic<int> signal_{0};
};

}  // namespace vxclone
