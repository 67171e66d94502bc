#include "virtual_tv/session/session_options.h"

#include <fmt/core.h>

#include <map>

#include "common/writer.h"

namespace vxtv {

namespace {

const std::map<std::string, std::optional<Isolation>>& isolationNames() {
    static const std::map<std::string, std::optional<Isolation>> names = {{"auto", std::nullopt},
                                                                          {"root", Isolation::Root},
                                                                          {"user", Isolation::User},
                                                                          {"real", Isolation::RealPaths}};
    return names;
}

std::string checkIsolation(const std::string& name) {
    if (isolationNames().count(name) != 0) return {};
    return fmt::format("'{}' is no way to isolate; take one of auto, root, user, real", name);
}

}  // namespace

std::shared_ptr<SessionOptions> addSessionOptions(CLI::App& verb) {
    const auto options = std::make_shared<SessionOptions>();
    verb.add_option("DIR", options->wish.television, "The television's folder")
        ->required()
        ->allow_extra_args(false);
    verb.add_option_function<std::vector<std::string>>(
            "--stick", [options](const std::vector<std::string>& sticks) { options->wish.sticks = sticks; },
            "A folder to plug in as a USB stick, seen as /media/NAME ('usb' without a name)")
        ->type_name("HOSTDIR[:NAME]")
        ->allow_extra_args(false);
    verb.add_option_function<std::string>(
            "--isolation",
            [options](const std::string& name) { options->wish.isolation = isolationNames().at(name); },
            "How the command is kept apart from this machine: the first way that works, or this one")
        ->check(checkIsolation)
        ->type_name("auto|root|user|real");
    verb.add_flag("--quiet", options->quiet, "Do not print the chosen isolation");
    return options;
}

int runSession(const SessionOptions& options, const std::vector<std::string>& command,
               const std::function<int(const Error&)>& complain) {
    auto wish = options.wish;
    wish.warn = [&complain](const Error& trouble) { complain(trouble); };
    const auto session = Session::open(wish);
    if (!session) return complain(session.error());
    if (!options.quiet)
        vxcommon::standardError().line("vxtv: " + vxcommon::printable(describe(session->isolation())));
    const auto outcome = session->run(command);
    if (!outcome) return complain(outcome.error());
    if (!outcome->complaint.empty()) complain(Error{ErrorCode::CannotRun, outcome->complaint});
    return outcome->status;
}

}  // namespace vxtv
