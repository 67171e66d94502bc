#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <exception>
#include <string>

#include "virtual_tv/commands/command.h"

namespace {

using AddCommand = void (*)(CLI::App&, vxtv::Action&);

// In the order of the help.
constexpr AddCommand kCommands[] = {
    vxtv::addCreateCommand,  vxtv::addDestroyCommand,  vxtv::addRunCommand,   vxtv::addShellCommand,
    vxtv::addInfoCommand,    vxtv::addSettingsCommand, vxtv::addGetCommand,   vxtv::addSetCommand,
    vxtv::addCompareCommand, vxtv::addFaultCommand,    vxtv::addCallsCommand, vxtv::addLogCommand,
    vxtv::addKeyfileCommand,
};

bool isVerb(const CLI::App& app, const std::string& word) {
    const auto verbs = app.get_subcommands([](const CLI::App*) { return true; });
    return std::any_of(verbs.begin(), verbs.end(),
                       [&word](const CLI::App* verb) { return verb->get_name() == word; });
}

int refuseWord(const std::string& word) {
    return vxtv::complain(
        {vxtv::ErrorCode::BadArgument, "there is no command " + word + "; `vxtv --help` lists the commands"});
}

int refuseArguments(const CLI::App& app, const CLI::ParseError& error) {
    std::string help = "vxtv";
    for (const CLI::App* verb : app.get_subcommands()) {
        help += " " + verb->get_name();
    }
    return vxtv::complain(
        {vxtv::ErrorCode::BadArgument, std::string(error.what()) + "; see: " + help + " --help"});
}

int run(int argc, char** argv) {
    CLI::App app("A virtual television on this machine, to clone hotel televisions without one.", "vxtv");
    app.set_version_flag("--version", "vxtv " VX_VERSION);
    app.require_subcommand(0, 1);
    app.footer("A television is a folder. Each command explains itself: vxtv COMMAND --help");
    vxtv::Action chosen;
    for (const AddCommand add : kCommands) {
        add(app, chosen);
    }
    if (argc > 1 && argv[1][0] != '-' && !isVerb(app, argv[1])) {
        return refuseWord(argv[1]);
    }
    try {
        app.parse(argc, argv);
    } catch (const CLI::Success& wanted) {
        return app.exit(wanted);
    } catch (const CLI::ParseError& error) {
        return refuseArguments(app, error);
    }
    if (!chosen) {
        std::fputs(app.help().c_str(), stdout);
        return vxtv::kExitOk;
    }
    return chosen();
}

}  // namespace

int main(int argc, char** argv) {
    try {
        return run(argc, argv);
    } catch (const std::exception& exception) {
        return vxtv::complain({vxtv::ErrorCode::Io, exception.what()});
    }
}
