#include "stepped_clock.h"

#include <dlfcn.h>
#include <pthread.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <mutex>
#include <optional>

namespace vxtest {

namespace {

constexpr long long kSecond = 1'000'000'000;
constexpr long long kMillisecond = 1'000'000;

std::atomic<bool> isStepping = false;
std::atomic<bool> waitsExpire = false;
std::atomic<long long> offset = 0;
std::atomic<int> openWaitsSeen = 0;

/// The arguments of the sleeps, and their scripted results.
struct Sleeps {
    std::mutex mutex;
    std::vector<long> seen;
    std::optional<timespec> interruption;
};

Sleeps& allSleeps() {
    static Sleeps sleeps;
    return sleeps;
}

long long nanoseconds(const timespec& time) {
    return static_cast<long long>(time.tv_sec) * kSecond + time.tv_nsec;
}

timespec timeOf(long long nanosecondsInAll) {
    return {static_cast<time_t>(nanosecondsInAll / kSecond), static_cast<long>(nanosecondsInAll % kSecond)};
}

timespec realTime(clockid_t clock) {
    timespec now{};
    syscall(SYS_clock_gettime, clock, &now);
    return now;
}

/// The function of the system that this program's own function hides.
template <class Function>
Function* hidden(const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

int steppedSleep(const timespec& wish, timespec* left) {
    Sleeps& sleeps = allSleeps();
    const std::lock_guard lock(sleeps.mutex);
    const long long wanted = nanoseconds(wish);
    sleeps.seen.push_back(static_cast<long>(wanted));
    if (!sleeps.interruption) {
        offset += wanted;
        return 0;
    }
    offset += wanted - nanoseconds(*sleeps.interruption);
    *left = *sleeps.interruption;
    sleeps.interruption.reset();
    errno = EINTR;
    return -1;
}

}  // namespace

SteppedClock::SteppedClock() {
    allSleeps().seen.clear();
    waitsExpire = false;
    offset = 0;
    openWaitsSeen = 0;
    isStepping = true;
}

SteppedClock::~SteppedClock() {
    isStepping = false;
}

void SteppedClock::letWaitsExpire() {
    waitsExpire = true;
}

void SteppedClock::interruptNextSleep(timespec left) {
    Sleeps& sleeps = allSleeps();
    const std::lock_guard lock(sleeps.mutex);
    sleeps.interruption = left;
}

std::vector<long> SteppedClock::sleeps() const {
    Sleeps& sleeps = allSleeps();
    const std::lock_guard lock(sleeps.mutex);
    return sleeps.seen;
}

long SteppedClock::stepped() const {
    return static_cast<long>(offset / kMillisecond);
}

int SteppedClock::openWaits() const {
    return openWaitsSeen;
}

}  // namespace vxtest

using namespace vxtest;

extern "C" {

int nanosleep(const timespec* wish, timespec* left) {
    return isStepping ? steppedSleep(*wish, left) : static_cast<int>(syscall(SYS_nanosleep, wish, left));
}

int clock_gettime(clockid_t clock, timespec* now) noexcept {
    *now = realTime(clock);
    if (isStepping && clock == CLOCK_MONOTONIC) {
        *now = timeOf(nanoseconds(*now) + offset);
    }
    return 0;
}

int pthread_cond_clockwait(pthread_cond_t* condition, pthread_mutex_t* mutex, clockid_t clock,
                           const timespec* deadline) {
    static auto* const wait = hidden<decltype(pthread_cond_clockwait)>("pthread_cond_clockwait");
    if (!isStepping) {
        return wait(condition, mutex, clock, deadline);
    }
    if (!waitsExpire) {
        const timespec real = timeOf(nanoseconds(*deadline) - offset);
        return wait(condition, mutex, clock, &real);
    }
    const timespec past{};
    const int result = wait(condition, mutex, clock, &past);
    offset = nanoseconds(*deadline) - nanoseconds(realTime(clock));
    return result;
}

int pthread_cond_wait(pthread_cond_t* condition, pthread_mutex_t* mutex) {
    static auto* const wait = hidden<decltype(pthread_cond_wait)>("pthread_cond_wait");
    ++openWaitsSeen;
    return wait(condition, mutex);
}

}  // extern "C"
