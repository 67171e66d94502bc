#include "virtual_tv/commands/app.h"

#include <unistd.h>

#include "common/command_line.h"
#include "common/terminal_table.h"
#include "virtual_tv/commands/help_formatter.h"

namespace vxtv {

namespace {

using AddCommand = void (*)(CLI::App&, Action&);

// In the order of the help.
constexpr AddCommand kCommands[] = {
    addCreateCommand,   addDestroyCommand,  addRunCommand,    addShellCommand,    addInfoCommand,
    addSettingsCommand, addGetCommand,      addSetCommand,    addServicesCommand, addSourcesCommand,
    addCompareCommand,  addFaultCommand,    addCallsCommand,  addLogCommand,      addKeyfileCommand,
    addAppCommand,      addChannelsCommand, addTimersCommand, addShowCommand,
};

}  // namespace

std::unique_ptr<CLI::App> makeApp(Action& chosen) {
    auto app = std::make_unique<CLI::App>(
        "A virtual television on this machine, to clone hotel televisions without one.", "vxtv");
    app->formatter(std::make_shared<HelpFormatter>(vxcommon::columnsAt(STDOUT_FILENO)));
    app->set_version_flag("--version", "vxtv " VX_VERSION, "Print the version and end");
    app->require_subcommand(0, 1);
    app->footer("A television is a folder. Each command explains itself: vxtv COMMAND --help");
    for (const AddCommand add : kCommands) {
        add(*app, chosen);
    }
    vxcommon::finishCommandLine(*app, "For programs: write JSON, where the command has it");
    return app;
}

}  // namespace vxtv
