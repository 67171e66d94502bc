#include <fmt/format.h>

#include <memory>

#include "virtual_tv/base/private_file.h"
#include "virtual_tv/commands/command.h"
#include "virtual_tv/commands/output.h"
#include "virtual_tv/factory/profile_shelf.h"
#include "virtual_tv/television/key_file.h"
#include "virtual_tv/television/key_installation.h"
#include "virtual_tv/television/television.h"

namespace vxtv {

namespace {

struct KeyfileOptions {
    std::string television;
    std::string file;
    std::string secret;
    std::string client;
    bool force = false;
};

std::string shippedKey(const char* name) {
    return (ProfileShelf::ofThisProgram().folder() / "keys" / name).string();
}

Result<void> makeKeyFile(const KeyfileOptions& options) {
    const auto secret = readFleetSecret(options.secret);
    VX_RETURN_IF_FAILED(secret);
    return readClient(options.client)
        .and_then(makeCloneKey)
        .and_then([&secret](const CloneKey& key) { return sealKeyFile(key, *secret); })
        .and_then([&options](const std::string& bytes) {
            return writePrivateFile(options.file, bytes, Existing::Refuse);
        });
}

int create(const KeyfileOptions& options) {
    if (const auto made = makeKeyFile(options); !made) {
        return complain(made.error());
    }
    say(fmt::format("made the key file {}", options.file));
    return finishOutput();
}

int install(const KeyfileOptions& options) {
    const auto placed =
        Television::open(options.television).and_then([&options](const Television& television) {
            return placeKeyFile(television.folder(), options.file, options.force);
        });
    if (!placed) {
        return complain(placed.error());
    }
    say(fmt::format("gave the television {} the key file {}; it is loaded at the first use",
                    options.television, options.file));
    return finishOutput();
}

void addCreate(CLI::App& keyfile, const std::shared_ptr<KeyfileOptions>& options, Action& chosen) {
    auto* const verb = keyfile.add_subcommand("create", "Make a key file with a new random key");
    options->secret = shippedKey("demonstration.secret");
    options->client = shippedKey("client.json");
    verb->add_option("FILE", options->file, "The file to make; it must not exist")->required();
    verb->add_option("--secret", options->secret,
                     "The fleet's installation secret, 32 random bytes (default: the shipped profiles')")
        ->option_text("SECRETFILE");
    verb->add_option("--client", options->client,
                     "Who may read the key: a JSON file (default: the clone library)")
        ->option_text("CLIENTFILE");
    verb->footer("Make a secret for a fleet of your own with: head -c 32 /dev/urandom > SECRETFILE");
    verb->callback([options, &chosen] { chosen = [options] { return create(*options); }; });
}

void addInstall(CLI::App& keyfile, const std::shared_ptr<KeyfileOptions>& options, Action& chosen) {
    auto* const verb = keyfile.add_subcommand("install", "Give a television a key file");
    verb->add_option("DIR", options->television, "The television")->required();
    verb->add_option("FILE", options->file, "A key file made with the installation secret of its fleet")
        ->required();
    verb->add_flag("--force", options->force,
                   "Replace the key file that is there, and forget the key that was loaded from it");
    verb->callback([options, &chosen] { chosen = [options] { return install(*options); }; });
}

}  // namespace

void addKeyfileCommand(CLI::App& app, Action& chosen) {
    auto* const verb = app.add_subcommand("keyfile", "Make key files, and give them to televisions");
    const auto options = std::make_shared<KeyfileOptions>();
    verb->require_subcommand(1);
    addCreate(*verb, options, chosen);
    addInstall(*verb, options, chosen);
    verb->footer("A key file carries the key that seals clone packages, for the televisions of one fleet.");
}

}  // namespace vxtv
