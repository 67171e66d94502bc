#pragma once

#include <signal.h>

#include "virtual_tv/process/message_channel.h"
#include "virtual_tv/process/supervisor.h"
#include "virtual_tv/process/terminal.h"

namespace vxtv {

/// The life of a session's first process, just forked: settles into its namespaces, prepares, starts the
/// command with the signal mask `mask`, takes care of orphans, and when the command has ended, or the other
/// end of the channel is closed, ends every process of the session and itself. Reports over the channel: one
/// message, of any kind but Signal.
[[noreturn]] void runFirstProcess(const Job& job, const MessageChannel& channel, const sigset_t& mask,
                                  const Terminal& terminal);

}  // namespace vxtv
