#include <fmt/format.h>
#include <fmt/ranges.h>

#include <memory>

#include "virtual_tv/commands/command.h"
#include "virtual_tv/commands/output.h"
#include "virtual_tv/factory/creation.h"
#include "virtual_tv/factory/destruction.h"
#include "virtual_tv/factory/profile_shelf.h"

namespace vxtv {

namespace {

struct CreateOptions {
    std::string folder;
    std::string profile;
};

int create(const CreateOptions& options) {
    const ProfileShelf shelf = ProfileShelf::ofThisProgram();
    const auto profile = shelf.find(options.profile).and_then(readProfile);
    if (!profile) {
        const bool unknown = profile.error().code == ErrorCode::UnknownProfile;
        return complain(unknown ? asking(profile.error(), options.profile, shelf.names()) : profile.error());
    }
    const Result<Television> television = createTelevision(options.folder, *profile);
    if (!television) {
        return complain(television.error());
    }
    say(fmt::format("made the television {} ({})", options.folder, profile->identity.model));
    return finishOutput();
}

int destroy(const std::string& folder) {
    const Result<void> destroyed = destroyTelevision(folder);
    if (!destroyed) {
        return complain(destroyed.error());
    }
    say("removed the television " + folder);
    return finishOutput();
}

}  // namespace

void addCreateCommand(CLI::App& app, Action& chosen) {
    auto* const verb = app.add_subcommand("create", "Make a television in a new folder");
    const auto options = std::make_shared<CreateOptions>();
    verb->add_option("DIR", options->folder, "The folder to make; its parent must exist")->required();
    verb->add_option("--profile", options->profile, "A shipped profile's name, or a profile's .json file")
        ->option_text("NAME|FILE")
        ->required();
    verb->footer(fmt::format("Shipped profiles: {}", fmt::join(ProfileShelf::ofThisProgram().names(), ", ")));
    verb->callback([options, &chosen] { chosen = [options] { return create(*options); }; });
}

void addDestroyCommand(CLI::App& app, Action& chosen) {
    auto* const verb = app.add_subcommand("destroy", "Remove a television with all it holds");
    const auto folder = std::make_shared<std::string>();
    verb->add_option("DIR", *folder, "The television")->required();
    verb->footer("Refused while a command runs in the television. There is no way back.");
    verb->callback([folder, &chosen] { chosen = [folder] { return destroy(*folder); }; });
}

}  // namespace vxtv
