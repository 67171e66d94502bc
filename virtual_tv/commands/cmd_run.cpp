#include <cstdlib>
#include <memory>

#include "common/command_line.h"
#include "virtual_tv/commands/command.h"
#include "virtual_tv/session/session_options.h"

namespace vxtv {

namespace {

/// The arguments as they were typed. In an option with several values, the parser would split arguments such
/// as [0-9]. So only the program's name is an option, and the rest is what the parser leaves over.
Result<std::vector<std::string>> commandOf(const CLI::App& verb, const std::string& program) {
    const auto rest = verb.remaining();
    std::vector<std::string> command = {program};
    if (rest.empty()) return command;
    if (rest.front() != "--") {
        const Error error{ErrorCode::BadArgument,
                          "cannot tell what '" + rest.front() +
                              "' belongs to; put -- before the command, as in: vxtv run DIR -- ls /opt"};
        return tl::make_unexpected(asking(error, rest.front(), vxcommon::optionNames(verb)));
    }
    command.insert(command.end(), rest.begin() + 1, rest.end());
    return command;
}

std::string userShell() {
    const char* const shell = std::getenv("SHELL");
    return shell == nullptr || *shell == '\0' ? "/bin/sh" : shell;
}

}  // namespace

void addRunCommand(CLI::App& app, Action& chosen) {
    auto* const verb =
        app.add_subcommand("run", "Run a command in the television: vxtv run DIR -- COMMAND ...");
    verb->footer("Ends with the command's exit status, and all that the command started ends with it.");
    const auto options = addSessionOptions(*verb);
    const auto program = std::make_shared<std::string>();
    verb->add_option("COMMAND", *program, "The program, and after it its arguments")
        ->required()
        ->allow_extra_args(false);
    verb->prefix_command();
    verb->callback([verb, options, program, &chosen] {
        chosen = [verb, options, program] {
            const auto command = commandOf(*verb, *program);
            return command ? runSession(*options, *command, complain) : complain(command.error());
        };
    });
}

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
