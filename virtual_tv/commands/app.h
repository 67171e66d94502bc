#pragma once

#include <memory>

#include "virtual_tv/commands/command.h"

namespace vxtv {

/// The command line of vxtv: every verb and its help. Parsing it sets `chosen`, which must outlive it. The
/// manual and the completions are generated from it, too.
std::unique_ptr<CLI::App> makeApp(Action& chosen);

}  // namespace vxtv
