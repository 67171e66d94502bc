#pragma once

#include <CLI/CLI.hpp>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "virtual_tv/session/session.h"

namespace vxtv {

/// What the user typed for a session: the wish, and what is only for the command line.
struct SessionOptions {
    SessionWish wish;
    bool quiet = false;
};

/// Adds to the verb the folder of the television and the options that every session has.
std::shared_ptr<SessionOptions> addSessionOptions(CLI::App& verb);

/// Opens the session, says on standard error how it is isolated, and runs the command. What went wrong is
/// handed to `complain`, whose result is the exit status then; a command that could not be started gives 126
/// or 127, any other its own.
int runSession(const SessionOptions& options, const std::vector<std::string>& command,
               const std::function<int(const Error&)>& complain);

}  // namespace vxtv
