#pragma once

#include <ctime>
#include <vector>

namespace vxtest {

/// A monotonic clock that a test advances instead of waiting. While it exists, `nanosleep` advances the clock
/// of the whole process and returns at once. The code under test is unchanged.
///
/// One at a time. Threads: any may sleep and wait meanwhile.
class SteppedClock {
 public:
    SteppedClock();
    ~SteppedClock();
    SteppedClock(const SteppedClock&) = delete;
    SteppedClock& operator=(const SteppedClock&) = delete;

    /// From now on a wait with a deadline ends without a signal, with the clock at its deadline.
    void letWaitsExpire();
    /// A signal interrupts the next sleep, with `left` of it remaining.
    void interruptNextSleep(timespec left);

    /// The sleeps so far, in nanoseconds.
    std::vector<long> sleeps() const;
    /// The milliseconds by which sleeps and waits have advanced the clock.
    long stepped() const;
    /// The number of waits without a deadline that have begun.
    int openWaits() const;
};

}  // namespace vxtest
