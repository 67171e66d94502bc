#pragma once

#include <signal.h>

#include <thread>
#include <utility>

namespace vxtv {

/// Starts a thread with all signals blocked, because signals are for the program's own threads.
template <class Work>
std::thread quietThread(Work&& work) {
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);
    struct Restore {
        const sigset_t& mask;
        ~Restore() { pthread_sigmask(SIG_SETMASK, &mask, nullptr); }
    } const restore{before};
    return std::thread(std::forward<Work>(work));
}

}  // namespace vxtv
