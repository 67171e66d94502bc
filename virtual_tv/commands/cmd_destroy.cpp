#include <memory>

#include "virtual_tv/commands/command.h"
#include "virtual_tv/commands/output.h"
#include "virtual_tv/factory/destruction.h"

namespace vxtv {

namespace {

int destroy(const std::string& folder) {
    const Result<void> destroyed = destroyTelevision(folder);
    if (!destroyed) {
        return complain(destroyed.error());
    }
    say("removed the television " + folder);
    return finishOutput();
}

}  // namespace

void addDestroyCommand(CLI::App& app, Action& chosen) {
    auto* const verb = app.add_subcommand("destroy", "Remove a television with all it holds");
    const auto folder = std::make_shared<std::string>();
    verb->add_option("DIR", *folder, "The television")->required();
    verb->footer("Refused while a command runs in the television. There is no way back.");
    verb->callback([folder, &chosen] { chosen = [folder] { return destroy(*folder); }; });
}

}  // namespace vxtv
