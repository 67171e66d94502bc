#include <memory>
#include <string>

#include "cloning_app/verbs/command.h"
#include "cloning_app/verbs/verbs.h"

namespace vxclone {

namespace {

struct VerifyArguments {
    std::string folder;
    bool json = false;
};

}  // namespace

void addVerifyCommand(CLI::App& app, Action& chosen) {
    const auto arguments = std::make_shared<VerifyArguments>();
    CLI::App* const verb = app.add_subcommand("verify", "Say whether a package fits here and is unaltered");
    verb->add_option("DIR", arguments->folder, "The package's folder, such as /media/usb/clone")->required();
    verb->add_flag("--json", arguments->json, "Say everything as JSON, one object a line");
    verb->callback([&chosen, arguments] {
        chosen = [arguments] {
            const ViewKind kind = arguments->json ? ViewKind::Json : ViewKind::Plain;
            return runCommand("verify", kind, [&](const CloneContext& context) {
                return runVerify(context, arguments->folder);
            });
        };
    });
}

}  // namespace vxclone
