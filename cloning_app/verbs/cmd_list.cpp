#include <memory>
#include <string>

#include "cloning_app/verbs/command.h"
#include "cloning_app/verbs/verbs.h"

namespace vxclone {

namespace {

struct ListArguments {
    std::string folder = kMediaFolder;
    bool json = false;
};

}  // namespace

void addListCommand(CLI::App& app, Action& chosen) {
    const auto arguments = std::make_shared<ListArguments>();
    CLI::App* const verb = app.add_subcommand("list", "Find the packages on the sticks, and say which fit");
    verb->add_option("DIR", arguments->folder, "Look here, and two levels below; else in /media");
    verb->add_flag("--json", arguments->json, "Say everything as JSON, one object a line");
    verb->callback([&chosen, arguments] {
        chosen = [arguments] {
            return lookAlone(arguments->json, [&] { return listPackages(arguments->folder); });
        };
    });
}

}  // namespace vxclone
