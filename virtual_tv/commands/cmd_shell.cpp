#include <cstdlib>

#include "virtual_tv/commands/command.h"
#include "virtual_tv/session/session_options.h"

namespace vxtv {

namespace {

std::string userShell() {
    const char* const shell = std::getenv("SHELL");
    return shell == nullptr || *shell == '\0' ? "/bin/sh" : shell;
}

}  // namespace

void addShellCommand(CLI::App& app, Action& chosen) {
    auto* const verb = app.add_subcommand("shell", "Open a shell in the television");
    verb->footer("Starts $SHELL, or /bin/sh. All that was started in the shell ends with it.");
    const auto options = addSessionOptions(*verb);
    verb->callback([options, &chosen] {
        chosen = [options] {
            options->wish.interactive = true;
            return runSession(*options, {userShell()}, complain);
        };
    });
}

}  // namespace vxtv
