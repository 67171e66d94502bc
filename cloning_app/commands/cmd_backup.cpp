#include <memory>
#include <string>

#include "cloning_app/commands/command.h"

namespace vxclone {

namespace {

struct Arguments {
    std::string folder;
    bool json = false;
};

}  // namespace

void addBackupCommand(CLI::App& app, Action& chosen) {
    const auto arguments = std::make_shared<Arguments>();
    CLI::App* const verb = app.add_subcommand("backup", "Save this television into a folder on a stick");
    verb->add_option("DIR", arguments->folder, "The folder, such as /media/usb/clone")->required();
    verb->add_flag("--json", arguments->json, "Say everything as JSON, one object a line");
    verb->callback([&chosen, arguments] {
        chosen = [arguments] {
            return runCommand(
                Direction::Backup, viewKindOfRun(arguments->json),
                [&](const CloneContext& context) { return runBackup(context, arguments->folder); });
        };
    });
}

}  // namespace vxclone
