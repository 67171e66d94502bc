#include <exception>
#include <iostream>
#include <string>
#include <vector>

#include "cloning_app/commands/app.h"
#include "cloning_app/run/json_lines.h"
#include "common/command_line.h"
#include "common/plain_reason.h"
#include "common/printable.h"
#include "common/process_start.h"

namespace {

using Words = std::vector<std::string>;

int refuseLine(const std::string& sentence, bool json) {
    if (json) {
        vxclone::JsonLines(std::cout).error({vxclone::ErrorCode::BadArguments, sentence});
    } else {
        std::cerr << vxcommon::printable("vxclone: " + sentence) << '\n';
    }
    return vxclone::exitStatusOf(vxclone::ErrorCode::BadArguments);
}

int run(const Words& words) {
    vxclone::Action chosen;
    const auto app = vxclone::makeApp(chosen);
    const auto parsed = vxcommon::parseCommandLine(*app, words);
    if (!parsed) {
        return refuseLine(parsed.error(), vxcommon::asksForJson(words));
    }
    if (!*parsed) {
        return vxclone::kExitOk;
    }
    return chosen ? chosen()
                  : refuseLine(
                        "nothing to do; name a command, such as backup, restore or verify (see vxclone "
                        "--help)",
                        vxcommon::asksForJson(words));
}

void sayBrokenOff(const std::string& why, bool json) {
    constexpr const char* kNextStep = "; restart the television and try again";
    try {
        if (json) {
            const std::string sentence = "broke off: " + why + kNextStep;
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
    vxcommon::startProcess();
    bool json = false;
    try {
        const Words words = vxcommon::wordsOf(count, arguments);
        json = vxcommon::asksForJson(words);
        return run(words);
    } catch (const std::exception& error) {
        sayBrokenOff(vxcommon::plainReason(error), json);
    }
    return vxclone::exitStatusOf(vxclone::ErrorCode::Internal);
}
