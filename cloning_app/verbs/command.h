#pragma once

#include <functional>
#include <memory>
#include <string>

#include "cloning_app/report/output.h"
#include "cloning_app/run/clone_run.h"

namespace CLI {
class App;
}

namespace vxclone {

/// What the parsed command line asks for, with this television's library; the result is the exit status.
using Action = std::function<int(CloneEngine& engine)>;

/// The values of `--without`: categories, keys of settings and applications.
inline constexpr const char* kDeclaredNames = "NAME,...";

/// The kind of view for a long run on this standard output.
ViewKind viewKindOfRun(bool json);

/// A view on the standard streams. `run` is the name of the command in it.
std::unique_ptr<ProgressView> makeView(ViewKind kind, std::string run);

/// Writes the output of a command to the standard streams. Result: the exit status.
int say(const Result<Output>& found, bool json);

/// Calls `look`, which changes nothing, writes its output, and names a run that died. A stop signal ends it
/// at once. Result: the exit status.
int lookAlone(bool json, const std::function<Result<Output>()>& look);

/// Looks with the television for itself meanwhile and writes what was found in the same way, with its
/// library `engine`, storage and standard streams, and stop signals heeded; `run` is what the command is
/// called.
int runLook(CloneEngine& engine, std::string run, bool json,
            const std::function<Result<Output>(const CloneContext&)>& look);

/// Clones, or looks at a clone, with this television's library `engine`, storage and standard streams, and
/// stop signals heeded; `run` is what the command is called. Result: the exit status.
int runCommand(CloneEngine& engine, std::string run, ViewKind kind,
               const std::function<Result<Report>(const CloneContext&)>& work);

}  // namespace vxclone
