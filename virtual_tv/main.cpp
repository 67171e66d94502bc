#include <exception>
#include <iostream>
#include <sstream>

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

/// Parses the line. The help and the version, which the parser writes itself, are printed like everything
/// else.
tl::expected<bool, std::string> parse(CLI::App& app, const std::vector<std::string>& words) {
    std::ostringstream said;
    std::streambuf* const before = std::cout.rdbuf(said.rdbuf());
    auto parsed = vxcommon::parseCommandLine(app, words);
    std::cout.rdbuf(before);
    vxtv::print(said.str());
    return parsed;
}

int run(const std::vector<std::string>& words) {
    vxtv::Action chosen;
    const auto app = vxtv::makeApp(chosen);
    const auto parsed = parse(*app, words);
    if (!parsed) {
        return refuseLine(parsed.error(), vxcommon::asksForJson(words));
    }
    if (!*parsed) {
        return vxtv::kExitOk;
    }
    if (!chosen) {
        vxtv::print(app->help());
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
