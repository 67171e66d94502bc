#include <exception>

#include "common/command_line.h"
#include "common/plain_reason.h"
#include "common/process_start.h"
#include "virtual_tv/commands/app.h"
#include "virtual_tv/commands/output.h"

namespace {

int refuseLine(const std::string& sentence, bool json) {
    if (!json) {
        return vxtv::complain({vxtv::ErrorCode::BadArgument, sentence});
    }
    vxtv::printJsonLine({{"version", 1},
                         {"event", "error"},
                         {"code", "bad-arguments"},
                         {"exit", vxtv::kExitFailed},
                         {"message", sentence}});
    vxtv::finishOutput();
    return vxtv::kExitFailed;
}

int run(const std::vector<std::string>& words) {
    vxtv::Action chosen;
    const auto app = vxtv::makeApp(chosen);
    const auto parsed = vxcommon::parseCommandLine(*app, words);
    if (!parsed) {
        return refuseLine(parsed.error(), vxcommon::asksForJson(words));
    }
    if (!*parsed) {
        return vxtv::kExitOk;
    }
    if (!chosen) {
        vxtv::print(vxcommon::printableLines(app->help()));
        return vxtv::kExitOk;
    }
    return chosen();
}

}  // namespace

int main(int argc, char** argv) {
    vxcommon::startProcess();
    try {
        const int status = run(vxcommon::wordsOf(argc, argv));
        return status == vxtv::kExitOk ? vxtv::finishOutput() : status;
    } catch (const std::exception& exception) {
        return vxtv::complain({vxtv::ErrorCode::Io, vxcommon::plainReason(exception)});
    }
}
