#include <memory>

#include "cloning_app/verbs/command.h"
#include "cloning_app/verbs/verbs.h"

namespace vxclone {

namespace {

struct UndoArguments {
    bool noReadBack = false;
    bool json = false;
};

}  // namespace

void addUndoCommand(CLI::App& app, Action& chosen) {
    const auto arguments = std::make_shared<UndoArguments>();
    CLI::App* const verb = app.add_subcommand("undo", "Go back to how it was before the last restore");
    verb->add_flag("--no-read-back", arguments->noReadBack,
                   "No comparison afterwards, unless a result is missing");
    verb->add_flag("--json", arguments->json, "Say everything as JSON, one object a line");
    verb->callback([&chosen, arguments] {
        chosen = [arguments] {
            return runCommand("undo", viewKindOfRun(arguments->json), [&](const CloneContext& context) {
                return runUndo(context, !arguments->noReadBack);
            });
        };
    });
}

}  // namespace vxclone
