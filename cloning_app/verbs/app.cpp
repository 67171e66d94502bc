#include "cloning_app/verbs/app.h"

#include <string>
#include <string_view>

#include "cloning_app/base/error_catalogue.h"
#include "cloning_app/base/stamp.h"
#include "cloning_app/television/category.h"
#include "cloning_app/verbs/backup.h"
#include "cloning_app/verbs/diff.h"
#include "cloning_app/verbs/inspect.h"
#include "cloning_app/verbs/list.h"
#include "cloning_app/verbs/restore.h"
#include "cloning_app/verbs/status.h"
#include "cloning_app/verbs/support_bundle.h"
#include "cloning_app/verbs/undo.h"
#include "cloning_app/verbs/verify.h"
#include "common/command_line.h"

namespace vxclone {

namespace {

constexpr std::size_t kHelpWidth = 80;
constexpr std::size_t kOptionWidth = 22;

/// Behind an option stands only the name of its value; the usage line shows what is required.
class HelpFormatter : public vxcommon::HelpFormatter {
 public:
    HelpFormatter() { column_width(kOptionWidth); }

    std::string make_option_opts(const CLI::Option* option) const override {
        const bool named = !option->get_positional() && option->get_type_size() != 0;
        return named ? " " + option->get_type_name() : "";
    }
};

/// The values of `--only` and `--except`.
std::string categoryNames() {
    std::string text = "\nCategories:\n";
    std::string line = " ";
    for (const Category& category : categories()) {
        if (line.size() + 1 + category.name.size() > kHelpWidth) {
            text += line + "\n";
            line = " ";
        }
        line += " " + std::string(category.name);
    }
    return text + line + "\n";
}

/// A verb, and the examples in its help: a command and its purpose on each line.
struct Verb {
    void (*add)(CLI::App& app, Action& chosen);
    std::string_view name;
    std::string_view examples;
    std::string (*rest)() = nullptr;  ///< the text below the examples
};

// In the order of the help.
constexpr Verb kVerbs[] = {
    {addBackupCommand, "backup",
     "  vxclone backup /media/usb/clone           save this television onto the stick\n"
     "  vxclone backup /media/usb/clone --name \"Lobby, spring\"\n"
     "                                            the same, with a name to know it by\n"
     "  vxclone backup /media/usb/clone --json    the same, for a program\n"},
    {addRestoreCommand, "restore",
     "  vxclone restore /media/usb/clone          load the package into this one\n"
     "  vxclone restore /media/usb/clone --only channels,settings-keys\n"
     "                                            load these two, leave the rest\n"
     "  vxclone restore /media/usb/clone --dry-run\n"
     "                                            what would be changed? nothing is\n"
     "  vxclone restore /media/usb/clone --keep-identity\n"
     "                                            leave addresses and the PIN alone\n",
     categoryNames},
    {addUndoCommand, "undo", "  vxclone undo                              go back to before the restore\n"},
    {addVerifyCommand, "verify",
     "  vxclone verify /media/usb/clone           does it fit, and is it unaltered?\n"},
    {addInspectCommand, "inspect",
     "  vxclone inspect /media/usb/clone          whose is it, and what is in it?\n"
     "  vxclone inspect /media/usb/clone --files  the same, with every file\n"},
    {addDiffCommand, "diff",
     "  vxclone diff /media/usb/clone             what would a restore change here?\n"
     "  vxclone diff /media/usb/old /media/usb/new\n"
     "                                            what sets two packages apart?\n"},
    {addListCommand, "list",
     "  vxclone list                              which packages are there? which fit?\n"
     "  vxclone list /media/usb                   the same of one stick\n"},
    {addStatusCommand, "status",
     "  vxclone status                            what became of the last run\n"
     "  vxclone status --follow                   watch the run that is going on\n"},
    {addSupportBundleCommand, "support-bundle",
     "  vxclone support-bundle /media/usb/support.tar\n"
     "                                            what support needs, no secrets\n"},
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
    app->formatter(std::make_shared<HelpFormatter>());
    app->set_version_flag("--version", "vxclone " + std::string(version()), "Print the version and end");
    app->require_subcommand(0, 1);
    app->footer(footer());
    for (const Verb& verb : kVerbs) {
        verb.add(*app, chosen);
        const std::string rest = verb.rest == nullptr ? "" : verb.rest();
        app->get_subcommand(std::string(verb.name))
            ->footer("Examples:\n" + std::string(verb.examples) + rest);
    }
    vxcommon::finishCommandLine(*app, "Say everything as JSON, one object a line");
    return app;
}

}  // namespace vxclone
