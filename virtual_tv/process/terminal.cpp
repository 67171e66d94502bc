#include "virtual_tv/process/terminal.h"

#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

namespace vxtv {

namespace {

/// A background process that changes the foreground group is stopped by a signal, unless it blocks that
/// signal.
void putInForeground(int terminal, pid_t group) {
    sigset_t blocked;
    sigset_t before;
    sigemptyset(&blocked);
    sigaddset(&blocked, SIGTTOU);
    sigprocmask(SIG_BLOCK, &blocked, &before);
    tcsetpgrp(terminal, group);
    sigprocmask(SIG_SETMASK, &before, nullptr);
}

}  // namespace

Terminal::Terminal()
    : terminal_(open("/dev/tty", O_RDWR | O_CLOEXEC)),
      group_(getpgrp()),
      ours_(terminal_ && tcgetpgrp(terminal_.get()) == group_) {}

Terminal::~Terminal() {
    if (ours_ && tcgetpgrp(terminal_.get()) != group_) putInForeground(terminal_.get(), group_);
}

void Terminal::handToSelf() const {
    setpgid(0, 0);
    if (ours_) putInForeground(terminal_.get(), getpgrp());
}

}  // namespace vxtv
