#include "cloning_app/commands/command.h"

#include <unistd.h>

#include <cstdlib>
#include <iostream>
#include <string_view>

#include "cloning_app/commands/stop_signals.h"
#include "cloning_app/package/layout.h"
#include "cloning_app/run/library_engine.h"

namespace vxclone {

ViewKind viewKindOfRun(bool json) {
    if (json) {
        return ViewKind::Json;
    }
    const char* const terminal = std::getenv("TERM");
    const bool rewritable = terminal != nullptr && std::string_view(terminal) != "dumb";
    return rewritable && vxcommon::isTerminal(STDOUT_FILENO) ? ViewKind::Terminal : ViewKind::Plain;
}

int runCommand(Direction direction, ViewKind kind,
               const std::function<Result<Report>(const CloneContext&)>& run) {
    const StopFlag& stop = heedStopSignals();
    const auto view =
        makeProgressView(kind, direction, std::cout, std::cerr, vxcommon::wantsColour(STDOUT_FILENO));
    LibraryEngine engine;
    const CloneContext context{engine, *view, stop, kCloneRoot};
    return conclude(run(context), *view);
}

}  // namespace vxclone
