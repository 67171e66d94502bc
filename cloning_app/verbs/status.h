#pragma once

#include "cloning_app/verbs/command.h"

namespace vxclone {

/// Adds the verb `status`; parsing it sets `chosen`.
void addStatusCommand(CLI::App& app, Action& chosen);

}  // namespace vxclone
