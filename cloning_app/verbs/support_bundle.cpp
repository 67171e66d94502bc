#include "cloning_app/verbs/support_bundle.h"

#include <fcntl.h>

#include <CLI/CLI.hpp>
#include <cerrno>
#include <filesystem>
#include <memory>
#include <string>

#include "cloning_app/package/layout.h"
#include "cloning_app/record/run_record.h"
#include "cloning_app/report/output.h"
#include "cloning_app/storage/mounts.h"
#include "cloning_app/support/support_bundle.h"
#include "common/terminal_table.h"

namespace vxclone {

namespace {

struct SupportBundleArguments {
    std::string file;
    std::string log;
    bool onThisDisk = false;
    bool json = false;
};

/// Whether the file is on a stick. False if its folder does not exist; the error appears when the file is
/// written.
Result<bool> bundleGoesOntoAStick(const std::filesystem::path& file, bool onThisDisk) {
    const std::string folder = file.has_parent_path() ? file.parent_path().string() : ".";
    const Descriptor opened(open(folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    if (!opened.valid() && (errno == ENOENT || errno == ENOTDIR)) {
        return false;
    }
    if (!opened.valid()) {
        return tl::make_unexpected(readError(Place::Stick, folder, errno));
    }
    return goesOntoAStick({{opened.get(), folder, Place::Stick}, file.string(), onThisDisk}, kCloneRoot,
                          realMountQuestions());
}

Result<Output> makeBundle(const SupportBundleArguments& arguments) {
    const auto onAStick = bundleGoesOntoAStick(arguments.file, arguments.onThisDisk);
    VX_RETURN_IF_FAILED(onAStick);
    return bundleFiles({recordFolderOf(kCloneRoot), arguments.log}, redactorOfTelevision())
        .and_then([](const std::vector<ArchiveEntry>& files) { return tarOf(files, secondsNow()); })
        .and_then([&](const std::string& tar) { return writeNewFile(arguments.file, tar); })
        .map([&] {
            Output output;
            output.closing.push_back("Wrote " + vxcommon::printable(arguments.file).text() +
                                     ", without any secret setting." +
                                     (*onAStick ? " Safe to remove the stick." : ""));
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
    verb->add_flag("--on-this-disk", arguments->onThisDisk, "Allow a place on the television itself");
    verb->add_flag("--json", arguments->json, "Say everything as JSON, one object a line");
    verb->callback([&chosen, arguments] {
        chosen = [arguments](CloneEngine& /*engine*/) {
            return say(makeBundle(*arguments), arguments->json);
        };
    });
}

}  // namespace vxclone
