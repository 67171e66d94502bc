#pragma once

#include <CLI/CLI.hpp>
#include <functional>
#include <memory>
#include <string>

#include "cloning_app/report/output.h"
#include "cloning_app/run/clone_run.h"

namespace vxclone {

/// What the parsed command line asks for; the result is the exit status.
using Action = std::function<int()>;

/// What `--without` takes: categories, keys of settings and applications.
inline constexpr const char* kDeclaredNames = "NAME,...";

/// Each adds its verb to the application; parsing the verb sets `chosen`, which main then runs.
void addBackupCommand(CLI::App& app, Action& chosen);
void addRestoreCommand(CLI::App& app, Action& chosen);
void addUndoCommand(CLI::App& app, Action& chosen);
void addVerifyCommand(CLI::App& app, Action& chosen);
void addInspectCommand(CLI::App& app, Action& chosen);
void addDiffCommand(CLI::App& app, Action& chosen);
void addListCommand(CLI::App& app, Action& chosen);
void addStatusCommand(CLI::App& app, Action& chosen);
void addSupportBundleCommand(CLI::App& app, Action& chosen);

/// How a long run is shown on this standard output.
ViewKind viewKindOfRun(bool json);

/// A view on the standard streams; `run` is what the command is called there.
std::unique_ptr<ProgressView> makeView(ViewKind kind, std::string run);

/// Writes what a command found on the standard streams; result: the exit status.
int say(const Result<Output>& found, bool json);

/// Looks and writes what was found, and names a run that died; a stop signal ends it at once. `look` changes
/// nothing. Result: the exit status.
int lookAlone(bool json, const std::function<Result<Output>()>& look);

/// Looks with the television for itself meanwhile and writes what was found in the same way, with its
/// library, storage and standard streams, and stop signals heeded; `run` is what the command is called.
int runLook(std::string run, bool json, const std::function<Result<Output>(const CloneContext&)>& look);

/// Clones, or looks at a clone, with this television's library, storage and standard streams, and stop
/// signals heeded; `run` is what the command is called. Result: the exit status.
int runCommand(std::string run, ViewKind kind,
               const std::function<Result<Report>(const CloneContext&)>& work);

}  // namespace vxclone
