#include <iostream>
#include <memory>
#include <string>

#include "cloning_app/commands/command.h"
#include "cloning_app/package/layout.h"
#include "cloning_app/run/output.h"
#include "cloning_app/run/run_record.h"
#include "cloning_app/support/support_bundle.h"
#include "common/terminal_table.h"

namespace vxclone {

namespace {

struct SupportBundleArguments {
    std::string file;
    std::string log;
    bool json = false;
};

Result<Output> makeBundle(const SupportBundleArguments& arguments) {
    return bundleFiles({recordFolderOf(kCloneRoot), arguments.log}, redactorOfTelevision())
        .and_then([](const std::vector<ArchiveEntry>& files) { return tarOf(files, secondsNow()); })
        .and_then([&](const std::string& tar) { return writeNewFile(arguments.file, tar); })
        .map([&] {
            Output output;
            output.closing.push_back("Wrote " + vxcommon::printable(arguments.file) +
                                     ", without any secret setting. Safe to remove the stick.");
            return output;
        });
}

}  // namespace

void addSupportBundleCommand(CLI::App& app, Action& chosen) {
    const auto arguments = std::make_shared<SupportBundleArguments>();
    CLI::App* const verb =
        app.add_subcommand("support-bundle", "Put what a support engineer needs into one file");
    verb->add_option("FILE", arguments->file, "The tar archive to make; it must not exist")->required();
    verb->add_option("--log", arguments->log, "A log file to add, at most its last 4 MiB")->type_name("FILE");
    verb->add_flag("--json", arguments->json, "Say everything as JSON, one object a line");
    verb->callback([&chosen, arguments] {
        chosen = [arguments] {
            return sayOutput(makeBundle(*arguments), arguments->json, std::cout, std::cerr);
        };
    });
}

}  // namespace vxclone
