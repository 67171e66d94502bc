#include <memory>
#include <string>

#include "cloning_app/verbs/command.h"
#include "cloning_app/verbs/verbs.h"

namespace vxclone {

namespace {

struct DiffArguments {
    std::string folder;
    std::string other;
    bool compared = false;
    bool quick = false;
    bool json = false;
};

int tellDifferences(const DiffArguments& arguments) {
    if (arguments.compared) {
        return lookAlone(arguments.json,
                         [&arguments] { return diffPackages(arguments.folder, arguments.other); });
    }
    return runLook("diff", arguments.json, [&](const CloneContext& context) {
        return diffWithTelevision(context, arguments.folder, arguments.quick);
    });
}

}  // namespace

void addDiffCommand(CLI::App& app, Action& chosen) {
    const auto arguments = std::make_shared<DiffArguments>();
    CLI::App* const verb =
        app.add_subcommand("diff", "Show what a restore changes, or how two packages differ");
    verb->add_option("DIR", arguments->folder, "The package's folder, such as /media/usb/clone")->required();
    const CLI::Option* const other =
        verb->add_option("DIR2", arguments->other, "Another package, to compare the first one with");
    verb->add_flag("--quick", arguments->quick, "Compare settings and pictures alone, at once")
        ->excludes("DIR2");
    verb->add_flag("--json", arguments->json, "Say everything as JSON, one object a line");
    verb->callback([&chosen, arguments, other] {
        arguments->compared = other->count() != 0;
        chosen = [arguments] { return tellDifferences(*arguments); };
    });
}

}  // namespace vxclone
