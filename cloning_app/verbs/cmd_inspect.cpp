#include <memory>
#include <string>

#include "cloning_app/verbs/command.h"
#include "cloning_app/verbs/verbs.h"

namespace vxclone {

namespace {

struct InspectArguments {
    std::string folder;
    bool files = false;
    bool json = false;
};

}  // namespace

void addInspectCommand(CLI::App& app, Action& chosen) {
    const auto arguments = std::make_shared<InspectArguments>();
    CLI::App* const verb = app.add_subcommand("inspect", "Show what is in a package, without loading it");
    verb->add_option("DIR", arguments->folder, "The package's folder, such as /media/usb/clone")->required();
    verb->add_flag("--files", arguments->files, "Name every file");
    verb->add_flag("--json", arguments->json, "Say everything as JSON, one object a line");
    verb->callback([&chosen, arguments] {
        chosen = [arguments] {
            return lookAlone(arguments->json,
                             [&] { return inspectPackage(arguments->folder, arguments->files); });
        };
    });
}

}  // namespace vxclone
