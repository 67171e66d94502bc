#pragma once

#include <CLI/CLI.hpp>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "virtual_tv/session/session.h"

namespace vxtv {

/// The options of a session on the command line.
struct SessionOptions {
    SessionWish wish;
    bool quiet = false;
};

/// Adds the folder of the television and the options of every session to the verb.
std::shared_ptr<SessionOptions> addSessionOptions(CLI::App& verb);

/// Opens the session, prints on standard error how it is isolated, and runs the command. An error is passed
/// to `complain`, whose result is then the exit status. A command that could not be started gives 126 or 127,
/// any other its own status.
int runSession(const SessionOptions& options, const std::vector<std::string>& command,
               const std::function<int(const Error&)>& complain);

}  // namespace vxtv
