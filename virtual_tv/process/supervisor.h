#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "virtual_tv/base/error.h"
#include "virtual_tv/process/isolation.h"

namespace vxtv {

/// A command and the processes it will belong to.
struct Job {
    std::vector<std::string> command;  ///< the program, found on the PATH of the session, and its arguments
    std::vector<std::pair<std::string, std::string>> environment;  ///< added to the caller's
    Isolation isolation = Isolation::Root;
    std::function<Result<void>()> prepare;  ///< called in the session's first process, inside its namespaces
    bool interactive = false;               ///< the command gets the terminal to itself
};

/// How a job ended: an exit status as a shell gives it, and a sentence if the command could not be started.
struct Outcome {
    int status = 0;
    std::string complaint;
};

/// Runs the job and waits until its last process is gone. Meanwhile SIGINT, SIGTERM, SIGHUP, SIGQUIT,
/// SIGUSR1 and SIGUSR2 that other processes send to the caller are passed on to the command; those of the
/// terminal reach the command without our help. If the caller is killed, so is the job.
/// On failure the error is that of `prepare`, or NoIsolation. Only one thread may run in the caller.
Result<Outcome> supervise(const Job& job);

}  // namespace vxtv
