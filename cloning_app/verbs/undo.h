#pragma once

#include "cloning_app/verbs/command.h"

namespace vxclone {

/// Adds the verb `undo`; parsing it sets `chosen`.
void addUndoCommand(CLI::App& app, Action& chosen);

/// Loads the safety backup of the last restore in the same way, and does not change the safety backup.
/// Errors: those of `runRestore`; `NoSafetyBackup`.
Result<Report> runUndo(const CloneContext& context, bool readBack);

}  // namespace vxclone
