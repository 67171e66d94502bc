#pragma once

#include "cloning_app/verbs/command.h"

namespace vxclone {

/// Adds the verb `support-bundle`; parsing it sets `chosen`.
void addSupportBundleCommand(CLI::App& app, Action& chosen);

}  // namespace vxclone
