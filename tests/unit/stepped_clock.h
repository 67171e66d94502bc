#pragma once

#include <ctime>
#include <vector>

namespace vxtest {

/// A monotonic clock that a test steps instead of waiting it out. While one is alive, `nanosleep` steps the
/// clock of the whole process and returns at once; the code under test is not changed for it.
///
/// One at a time. Threads: any may sleep and wait meanwhile.
class SteppedClock {
 public:
    SteppedClock();
    ~SteppedClock();
    SteppedClock(const SteppedClock&) = delete;
    SteppedClock& operator=(const SteppedClock&) = delete;

    /// From now on a wait with a deadline finds that nothing came, and the clock at its deadline.
    void letWaitsExpire();
    /// A signal cuts the next sleep short, with so much of it left.
    void interruptNextSleep(timespec left);

    /// What was slept for so far, in nanoseconds.
    std::vector<long> sleeps() const;
    /// By how much sleeps and waits have stepped the clock, in milliseconds.
    long stepped() const;
    /// How many waits without a deadline have begun.
    int openWaits() const;
};

}  // namespace vxtest
