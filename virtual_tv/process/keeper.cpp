#include "virtual_tv/process/keeper.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/file.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>

namespace vxtv {

namespace {

constexpr int kOutOfTheWay = 32;

void endWithTheChild(int) {
    waitpid(-1, nullptr, WNOHANG);
    _exit(0);
}

/// Closes everything else of the caller; otherwise whoever waits for the caller's end would also wait for
/// ours.
void keepOnly(const std::array<int, kKeptDescriptors>& kept) {
    std::array<int, kKeptDescriptors> moved{};
    for (std::size_t i = 0; i < kept.size(); ++i) moved[i] = fcntl(kept[i], F_DUPFD, kOutOfTheWay);
    const int nothing = open("/dev/null", O_RDWR);
    for (const int standard : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) dup2(nothing, standard);
    for (std::size_t i = 0; i < moved.size(); ++i) dup2(moved[i], kFirstKept + static_cast<int>(i));
    closefrom(kFirstKept + static_cast<int>(kKeptDescriptors));
}

}  // namespace

void becomeKeeper(const char* name, const std::array<int, kKeptDescriptors>& kept) {
    setsid();
    prctl(PR_SET_NAME, name);
    if (chdir("/") != 0) _exit(1);
    keepOnly(kept);
    sigset_t others;
    sigfillset(&others);
    sigdelset(&others, SIGCHLD);
    sigprocmask(SIG_SETMASK, &others, nullptr);
    struct sigaction ended {};
    ended.sa_handler = endWithTheChild;
    sigaction(SIGCHLD, &ended, nullptr);
}

void keepUntilLocked(int lock, pid_t child) {
    while (flock(lock, LOCK_EX) != 0 && errno == EINTR) continue;
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    _exit(0);
}

}  // namespace vxtv
