#include <memory>
#include <string>

#include "cloning_app/commands/command.h"

namespace vxclone {

namespace {

struct Arguments {
    std::string folder;
    std::string only;
    bool all = true;
    bool forceModel = false;
    bool json = false;
};

Result<Report> restoreAsTold(const CloneContext& context, const Arguments& arguments) {
    const auto list = arguments.all ? allCategories() : parseCategories(arguments.only);
    if (!list) {
        return tl::make_unexpected(list.error());
    }
    return runRestore(context, arguments.folder, {*list, arguments.forceModel, arguments.all});
}

}  // namespace

void addRestoreCommand(CLI::App& app, Action& chosen) {
    const auto arguments = std::make_shared<Arguments>();
    CLI::App* const verb = app.add_subcommand("restore", "Load a package on a stick into this television");
    verb->add_option("DIR", arguments->folder, "The package's folder, such as /media/usb/clone")->required();
    const CLI::Option* const only =
        verb->add_option("--only", arguments->only, "Only these categories, separated by commas")->join(',');
    verb->add_flag("--force-model", arguments->forceModel, "Load a package that was made on another model");
    verb->add_flag("--json", arguments->json, "Say everything as JSON, one object a line");
    verb->callback([&chosen, arguments, only] {
        arguments->all = only->count() == 0;
        chosen = [arguments] {
            return runCommand(
                Direction::Restore, viewKindOfRun(arguments->json),
                [&](const CloneContext& context) { return restoreAsTold(context, *arguments); });
        };
    });
}

}  // namespace vxclone
