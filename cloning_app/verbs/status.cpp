#include "cloning_app/verbs/status.h"

#include <CLI/CLI.hpp>
#include <memory>
#include <string>

#include "cloning_app/package/layout.h"
#include "cloning_app/record/status.h"
#include "cloning_app/verbs/stop_signals.h"

namespace vxclone {

namespace {

struct StatusArguments {
    bool follow = false;
    bool json = false;
};

Result<Status> statusAsTold(const StatusArguments& arguments) {
    const auto folder = recordFolderOf(kCloneRoot);
    auto status = readStatus(folder);
    if (!arguments.follow || !status || !status->last || !status->last->goingOn) {
        return status;
    }
    const std::string run(nameOf(status->last->record.kind));
    const auto view = makeView(viewKindOfRun(arguments.json), run);
    status = followRun(folder, *view, heedStopSignals());
    view->clear();
    return status;
}

int tellStatus(const StatusArguments& arguments) {
    return say(statusAsTold(arguments).map(outputOf), arguments.json);
}

}  // namespace

void addStatusCommand(CLI::App& app, Action& chosen) {
    const auto arguments = std::make_shared<StatusArguments>();
    CLI::App* const verb =
        app.add_subcommand("status", "Say what became of the last run, or how this one goes");
    verb->add_flag("--follow", arguments->follow, "Watch the run that is going on until its end");
    verb->add_flag("--json", arguments->json, "Say everything as JSON, one object a line");
    verb->callback([&chosen, arguments] {
        chosen = [arguments](CloneEngine& /*engine*/) { return tellStatus(*arguments); };
    });
}

}  // namespace vxclone
