#pragma once

#include <signal.h>

#include "virtual_tv/process/message_channel.h"
#include "virtual_tv/process/supervisor.h"
#include "virtual_tv/process/terminal.h"

namespace vxtv {

/// The main function of a session's first process, right after the fork. It enters its namespaces, prepares,
/// starts the command with the signal mask `mask`, and adopts orphans. When the command has ended or the
/// other end of the channel is closed, it ends all processes of the session and itself. It reports one
/// message over the channel, of any kind except Signal.
[[noreturn]] void runFirstProcess(const Job& job, const MessageChannel& channel, const sigset_t& mask,
                                  const Terminal& terminal);

}  // namespace vxtv
