#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "virtual_tv/base/error.h"
#include "virtual_tv/process/isolation.h"

namespace vxtv {

/// A command and the environment of its processes.
struct Job {
    std::vector<std::string> command;  ///< the program, found on the PATH of the session, and its arguments
    std::vector<std::pair<std::string, std::string>> environment;  ///< added to the caller's
    Isolation isolation = Isolation::Root;
    std::function<Result<void>()> prepare;  ///< called in the session's first process, inside its namespaces
    bool interactive = false;               ///< the command gets the terminal to itself
};

/// How a job ended: an exit status as in a shell, and a sentence if the command could not be started.
struct Outcome {
    int status = 0;
    std::string complaint;
};

/// Runs the job and waits until its last process has ended. Meanwhile SIGINT, SIGTERM, SIGHUP, SIGQUIT,
/// SIGUSR1 and SIGUSR2 from other processes are passed on to the command; those from the terminal reach the
/// command anyway. If the caller is killed, the job ends. On failure the error is that of `prepare`, or
/// NoIsolation. The caller must have only one thread.
Result<Outcome> supervise(const Job& job);

}  // namespace vxtv
