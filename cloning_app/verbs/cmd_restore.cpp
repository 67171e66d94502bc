#include <algorithm>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "cloning_app/verbs/command.h"
#include "cloning_app/verbs/verbs.h"

namespace vxclone {

namespace {

struct RestoreArguments {
    std::string folder;
    std::string only;
    std::string except;
    std::string expect;
    std::string without;
    bool all = true;
    bool excepted = false;  ///< `--except` is given, be it empty
    bool forceModel = false;
    bool keepIdentity = false;
    bool dryRun = false;
    bool quick = false;
    bool noSafety = false;
    bool noReadBack = false;
    bool json = false;
};

constexpr const char* kCategories = "CATEGORY,...";
constexpr std::size_t kFewestDigits = 16;
constexpr std::size_t kMostDigits = 64;

/// A digest, or so much of its beginning that nobody meets it by chance. Result: empty, or what is wrong.
std::string isDigest(const std::string& text) {
    const bool good = text.size() >= kFewestDigits && text.size() <= kMostDigits &&
                      text.find_first_not_of("0123456789abcdef") == std::string::npos;
    return good ? "" : "give 16 to 64 digits of a digest, 0-9 and a-f, from its beginning";
}

/// The categories that `--only` and `--except` leave.
Result<std::vector<VXClone>> listOf(const RestoreArguments& arguments) {
    if (!arguments.all) {
        return parseCategories(arguments.only);
    }
    std::vector<VXClone> list = allCategories();
    if (!arguments.excepted) {
        return list;
    }
    const auto without = parseCategories(arguments.except);
    if (!without) {
        return without;
    }
    list.erase(std::remove_if(list.begin(), list.end(),
                              [&without](VXClone category) {
                                  return std::find(without->begin(), without->end(), category) !=
                                         without->end();
                              }),
               list.end());
    return list.empty()
               ? failure(ErrorCode::BadArguments, "--except leaves no category to load; name fewer of them")
               : Result<std::vector<VXClone>>(std::move(list));
}

Result<Report> restoreAsTold(const CloneContext& context, const RestoreArguments& arguments) {
    const auto list = listOf(arguments);
    VX_RETURN_IF_FAILED(list);
    auto without = Declared::parse(arguments.without);
    VX_RETURN_IF_FAILED(without);
    RestoreOptions options{*list, arguments.forceModel, arguments.all, arguments.expect};
    options.safety = !arguments.noSafety;
    options.readBack = !arguments.noReadBack;
    options.keepIdentity = arguments.keepIdentity;
    options.dryRun = arguments.dryRun;
    options.without = std::move(*without);
    options.quick = arguments.quick;
    return runRestore(context, arguments.folder, options);
}

}  // namespace

void addRestoreCommand(CLI::App& app, Action& chosen) {
    const auto arguments = std::make_shared<RestoreArguments>();
    CLI::App* const verb = app.add_subcommand("restore", "Load a package on a stick into this television");
    verb->add_option("DIR", arguments->folder, "The package's folder, such as /media/usb/clone")->required();
    const CLI::Option* const only =
        verb->add_option("--only", arguments->only, "Load these alone, separated by commas")
            ->join(',')
            ->type_name(kCategories);
    const CLI::Option* const except =
        verb->add_option("--except", arguments->except, "Load all but these; not together with --only")
            ->join(',')
            ->type_name(kCategories)
            ->excludes("--only");
    verb->add_flag("--dry-run", arguments->dryRun, "Say what would be changed, and change nothing");
    verb->add_flag("--quick", arguments->quick, "A dry run of settings and pictures alone")
        ->needs("--dry-run");
    verb->add_flag("--keep-identity", arguments->keepIdentity,
                   "Leave its own addresses, numbers and PIN as they are");
    verb->add_flag("--no-safety", arguments->noSafety,
                   "No safety backup first; vxclone undo cannot go back then");
    verb->add_flag("--no-read-back", arguments->noReadBack,
                   "No comparison afterwards, unless a result is missing");
    verb->add_option("--without", arguments->without,
                     "What this television does not have: no way back needs it")
        ->join(',')
        ->type_name(kDeclaredNames);
    verb->add_flag("--force-model", arguments->forceModel, "Load a package that was made on another model");
    verb->add_option("--expect", arguments->expect, "Load this package alone; backup and inspect print it")
        ->check(isDigest)
        ->type_name("DIGEST");
    verb->add_flag("--json", arguments->json, "Say everything as JSON, one object a line");
    verb->callback([&chosen, arguments, only, except] {
        arguments->all = only->count() == 0;
        arguments->excepted = except->count() != 0;
        chosen = [arguments] {
            return runCommand("restore", viewKindOfRun(arguments->json), [&](const CloneContext& context) {
                return restoreAsTold(context, *arguments);
            });
        };
    });
}

}  // namespace vxclone
