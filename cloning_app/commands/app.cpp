#include "cloning_app/commands/app.h"

#include <string>
#include <string_view>

#include "cloning_app/error_catalogue.h"
#include "cloning_app/version.h"

namespace vxclone {

namespace {

/// A verb, and what its help shows as examples: a command and what it does, a line each.
struct Verb {
    void (*add)(CLI::App& app, Action& chosen);
    std::string_view name;
    std::string_view examples;
};

// In the order of the help.
constexpr Verb kVerbs[] = {
    {addBackupCommand, "backup",
     "  vxclone backup /media/usb/clone           save this television onto the stick\n"
     "  vxclone backup /media/usb/clone --name \"Lobby, spring\"\n"
     "                                            the same, with a name that list and inspect show\n"
     "  vxclone backup /media/usb/clone --json    the same, for a program\n"},
    {addRestoreCommand, "restore",
     "  vxclone restore /media/usb/clone          load the package into this television\n"
     "  vxclone restore /media/usb/clone --only channels,settings-keys\n"
     "                                            load these two categories, leave the rest\n"
     "  vxclone restore /media/usb/clone --dry-run\n"
     "                                            what would be changed? nothing is\n"
     "  vxclone restore /media/usb/clone --keep-identity\n"
     "                                            leave addresses and the PIN as they are here\n"},
    {addUndoCommand, "undo",
     "  vxclone undo                              go back to how it was before the restore\n"},
    {addVerifyCommand, "verify",
     "  vxclone verify /media/usb/clone           does it fit, and is it unaltered?\n"},
    {addInspectCommand, "inspect",
     "  vxclone inspect /media/usb/clone          whose package is it, and what is in it?\n"
     "  vxclone inspect /media/usb/clone --files  the same, with the name of every file\n"},
    {addDiffCommand, "diff",
     "  vxclone diff /media/usb/clone             what would a restore change here?\n"
     "  vxclone diff /media/usb/old /media/usb/new\n"
     "                                            what sets two packages apart?\n"},
    {addListCommand, "list",
     "  vxclone list                              which packages are on the sticks, and which fit?\n"
     "  vxclone list /media/usb                   the same of one stick\n"},
    {addStatusCommand, "status",
     "  vxclone status                            what became of the last run\n"
     "  vxclone status --follow                   watch the run that is going on\n"},
    {addSupportBundleCommand, "support-bundle",
     "  vxclone support-bundle /media/usb/support.tar\n"
     "                                            what a support engineer needs, without secrets\n"},
};

std::string footer() {
    std::string text =
        "Examples:\n"
        "  vxclone backup /media/usb/clone     on the television that is set up\n"
        "  vxclone verify /media/usb/clone     on the next one: does the package fit?\n"
        "  vxclone restore /media/usb/clone    load it\n"
        "\nExit statuses:\n";
    for (const StatusFact& fact : exitStatuses()) {
        const std::string number = std::to_string(fact.status);
        text += std::string(4 - number.size(), ' ') + number + "  " + std::string(fact.meaning) + "\n";
    }
    return text + "\nEach command explains itself: vxclone COMMAND --help";
}

}  // namespace

std::unique_ptr<CLI::App> makeApp(Action& chosen) {
    auto app = std::make_unique<CLI::App>(
        "Clones this hotel television: saves it onto a stick, loads it from one.", "vxclone");
    app->set_version_flag("--version", "vxclone " + std::string(version()), "Print the version and end");
    app->require_subcommand(0, 1);
    app->footer(footer());
    for (const Verb& verb : kVerbs) {
        verb.add(*app, chosen);
        app->get_subcommand(std::string(verb.name))->footer("Examples:\n" + std::string(verb.examples));
    }
    return app;
}

}  // namespace vxclone
