#pragma once

#include <CLI/CLI.hpp>
#include <memory>

#include "cloning_app/verbs/command.h"

namespace vxclone {

/// The command line of vxclone: every verb, its help and its examples. Parsing it sets `chosen`, which must
/// outlive it. The manual and the completions are generated from it, too.
std::unique_ptr<CLI::App> makeApp(Action& chosen);

}  // namespace vxclone
