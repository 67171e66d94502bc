#include <algorithm>
#include <exception>
#include <iostream>
#include <string>
#include <string_view>

#include "cloning_app/commands/app.h"
#include "cloning_app/run/json_lines.h"

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

void sayBrokenOff(const char* why, bool json) {
    constexpr const char* kNextStep = "; restart the television and try again";
    try {
        if (json) {
            const std::string sentence = std::string("broke off: ") + why + kNextStep;
            vxclone::JsonLines(std::cout).error({vxclone::ErrorCode::Internal, sentence});
            return;
        }
    } catch (const std::exception&) {
        // Memory is too short for the line; the text below needs none.
    }
    std::cerr << "vxclone: broke off: " << why << kNextStep << '\n';
}

}  // namespace

int main(int count, char** arguments) {
    try {
        return run(count, arguments);
    } catch (const std::exception& error) {
        char** const end = arguments + count;
        sayBrokenOff(error.what(), std::find(arguments, end, std::string_view("--json")) != end);
    }
    return vxclone::exitStatusOf(vxclone::ErrorCode::Internal);
}
