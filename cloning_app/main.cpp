#include <exception>
#include <iostream>

#include "cloning_app/commands/command.h"

namespace {

int run(int count, char** arguments) {
    CLI::App app("Clones this hotel television: saves it onto a stick, loads it from one.", "vxclone");
    app.set_version_flag("--version", "vxclone " VXCLONE_VERSION);
    app.require_subcommand(0, 1);
    vxclone::Action chosen;
    vxclone::addBackupCommand(app, chosen);
    vxclone::addRestoreCommand(app, chosen);
    vxclone::addVerifyCommand(app, chosen);
    try {
        app.parse(count, arguments);
    } catch (const CLI::ParseError& error) {
        const bool asked = app.exit(error) == 0;
        return asked ? vxclone::kExitOk : vxclone::exitStatusOf(vxclone::ErrorCode::BadArguments);
    }
    if (!chosen) {
        std::cerr
            << "vxclone: nothing to do; name a command: backup, restore or verify (see vxclone --help)\n";
        return vxclone::exitStatusOf(vxclone::ErrorCode::BadArguments);
    }
    return chosen();
}

}  // namespace

int main(int count, char** arguments) {
    try {
        return run(count, arguments);
    } catch (const std::exception& error) {
        std::cerr << "vxclone: broke off: " << error.what() << "; restart the television and try again\n";
    }
    return vxclone::exitStatusOf(vxclone::ErrorCode::Internal);
}
