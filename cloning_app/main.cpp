#include <exception>
#include <iostream>

#include "cloning_app/commands/app.h"

namespace {

int run(int count, char** arguments) {
    vxclone::Action chosen;
    const auto app = vxclone::makeApp(chosen);
    try {
        app->parse(count, arguments);
    } catch (const CLI::ParseError& error) {
        const bool asked = app->exit(error) == 0;
        return asked ? vxclone::kExitOk : vxclone::exitStatusOf(vxclone::ErrorCode::BadArguments);
    }
    if (!chosen) {
        std::cerr << "vxclone: nothing to do; name a command, such as backup, restore or verify "
                     "(see vxclone --help)\n";
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
