#include <cerrno>
#include <cstring>
#include <exception>
#include <string>
#include <vector>

#include "cloning_app/report/json_lines.h"
#include "cloning_app/television/library_engine.h"
#include "cloning_app/verbs/app.h"
#include "cloning_app/verbs/stop_signals.h"
#include "common/command_line.h"
#include "common/plain_reason.h"
#include "common/process_start.h"
#include "common/standard_output.h"
#include "common/writer.h"

namespace {

using Words = std::vector<std::string>;

int refuseLine(const std::string& sentence, bool json) {
    if (json) {
        vxclone::JsonLines(vxcommon::standardOutput()).error({vxclone::ErrorCode::BadArguments, sentence});
    } else {
        vxcommon::standardError().line(vxcommon::printable("vxclone: " + sentence));
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
    vxclone::LibraryEngine engine;
    return chosen ? chosen(engine)
                  : refuseLine(
                        "nothing to do; name a command, such as backup, restore or verify (see vxclone "
                        "--help)",
                        vxcommon::asksForJson(words));
}

void sayBrokenOff(const vxcommon::Printable& why, bool json) {
    constexpr vxcommon::PrintableView kNextStep = "; restart the television and try again";
    try {
        if (json) {
            vxclone::JsonLines(vxcommon::standardOutput())
                .error({vxclone::ErrorCode::Internal, "broke off: " + why + kNextStep});
            return;
        }
    } catch (const std::exception&) {
        // Memory is too short for the line; the text below needs none.
    }
    vxcommon::Writer errors = vxcommon::standardError();
    for (const vxcommon::PrintableView part :
         {vxcommon::PrintableView("vxclone: broke off: "), vxcommon::PrintableView(why), kNextStep,
          vxcommon::PrintableView("\n")}) {
        errors.write(part);
    }
}

int runSafely(int count, char** arguments) {
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

/// The exit status of a command whose output ended for this reason (errno), or did not fail (0). Who closes
/// a pipe has read enough.
int statusWithOutput(int status, int reason) {
    if (reason == 0 || reason == EPIPE) {
        return status;
    }
    vxcommon::standardError().line(
        "vxclone: cannot write the output: " + vxcommon::printable(std::strerror(reason)) +
        "; send it elsewhere; vxclone status tells how the last run ended");
    return status == vxclone::kExitOk ? vxclone::exitStatusOf(vxclone::ErrorCode::TelevisionIo) : status;
}

}  // namespace

int main(int count, char** arguments) {
    vxcommon::startProcess();
    vxclone::surviveClosedOutput();
    vxcommon::StandardOutput output;
    const int status = runSafely(count, arguments);
    return statusWithOutput(status, output.finish());
}
