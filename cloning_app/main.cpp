#include <algorithm>
#include <exception>
#include <iostream>
#include <string_view>

#include "cloning_app/commands/app.h"
#include "cloning_app/run/output.h"

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
        const bool json =
            std::find(arguments, arguments + count, std::string_view("--json")) != arguments + count;
        const vxclone::Error told{vxclone::ErrorCode::Internal, std::string("broke off: ") + error.what() +
                                                                    "; restart the television and try again"};
        return vxclone::sayOutput(tl::make_unexpected(told), json, std::cout, std::cerr);
    }
}
