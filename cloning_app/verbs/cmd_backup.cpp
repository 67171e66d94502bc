#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "cloning_app/verbs/command.h"
#include "cloning_app/verbs/verbs.h"

namespace vxclone {

namespace {

struct BackupArguments {
    std::string folder;
    std::string name;
    std::string without;
    bool named = false;
    bool onThisDisk = false;
    bool json = false;
};

Result<Report> backUpAsTold(const CloneContext& context, const BackupArguments& arguments) {
    auto without = Declared::parse(arguments.without);
    VX_RETURN_IF_FAILED(without);
    const auto called = arguments.named ? std::optional(arguments.name) : std::nullopt;
    return runBackup(context, arguments.folder, {called, std::move(*without), arguments.onThisDisk});
}

}  // namespace

void addBackupCommand(CLI::App& app, Action& chosen) {
    const auto arguments = std::make_shared<BackupArguments>();
    CLI::App* const verb = app.add_subcommand("backup", "Save this television into a folder on a stick");
    verb->add_option("DIR", arguments->folder, "The folder, such as /media/usb/clone")->required();
    const CLI::Option* const name =
        verb->add_option("--name", arguments->name, "What people call the package; else its folder's name");
    verb->add_option("--without", arguments->without,
                     "What this television does not have: that is no failure")
        ->join(',')
        ->type_name(kDeclaredNames);
    verb->add_flag("--on-this-disk", arguments->onThisDisk, "Allow a place on the television itself");
    verb->add_flag("--json", arguments->json, "Say everything as JSON, one object a line");
    verb->callback([&chosen, arguments, name] {
        arguments->named = name->count() != 0;
        chosen = [arguments] {
            return runCommand("backup", viewKindOfRun(arguments->json),
                              [&](const CloneContext& context) { return backUpAsTold(context, *arguments); });
        };
    });
}

}  // namespace vxclone
