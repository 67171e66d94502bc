#include <memory>
#include <string>

#include "cloning_app/commands/command.h"

namespace vxclone {

namespace {

struct Arguments {
    std::string folder;
    std::string only;
    std::string expect;
    bool all = true;
    bool forceModel = false;
    bool json = false;
};

constexpr std::size_t kFewestDigits = 16;
constexpr std::size_t kMostDigits = 64;

/// A digest, or so much of its beginning that nobody meets it by chance. Result: empty, or what is wrong.
std::string isDigest(const std::string& text) {
    const bool good = text.size() >= kFewestDigits && text.size() <= kMostDigits &&
                      text.find_first_not_of("0123456789abcdef") == std::string::npos;
    return good ? "" : "give 16 to 64 digits of a digest, 0-9 and a-f, from its beginning";
}

Result<Report> restoreAsTold(const CloneContext& context, const Arguments& arguments) {
    const auto list = arguments.all ? allCategories() : parseCategories(arguments.only);
    if (!list) {
        return tl::make_unexpected(list.error());
    }
    return runRestore(context, arguments.folder,
                      {*list, arguments.forceModel, arguments.all, arguments.expect});
}

}  // namespace

void addRestoreCommand(CLI::App& app, Action& chosen) {
    const auto arguments = std::make_shared<Arguments>();
    CLI::App* const verb = app.add_subcommand("restore", "Load a package on a stick into this television");
    verb->add_option("DIR", arguments->folder, "The package's folder, such as /media/usb/clone")->required();
    const CLI::Option* const only =
        verb->add_option("--only", arguments->only, "Only these categories, separated by commas")->join(',');
    verb->add_flag("--force-model", arguments->forceModel, "Load a package that was made on another model");
    verb->add_option("--expect", arguments->expect,
                     "Load only the package with this digest, as backup and inspect print it")
        ->check(isDigest);
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
