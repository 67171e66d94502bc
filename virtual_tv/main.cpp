#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <exception>
#include <string>

#include "virtual_tv/commands/app.h"

namespace {

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
    vxtv::Action chosen;
    const auto made = vxtv::makeApp(chosen);
    CLI::App& app = *made;
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
