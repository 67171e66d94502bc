#include "cloning_app/verbs/verify.h"

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <memory>
#include <string>

#include "cloning_app/check/integrity.h"
#include "cloning_app/run/library_run.h"
#include "cloning_app/run/recorded_run.h"
#include "cloning_app/run/staged_package.h"
#include "common/terminal_table.h"

namespace vxclone {

namespace {

/// Only the identity and the seal are copied to the television, because the package is not loaded.
Result<Examination> examine(const CloneContext& context, const StickTarget& target) {
    const auto opened = target.openPackage();
    VX_RETURN_IF_FAILED(opened);
    const Tree package{opened->get(), target.path(), Place::Stick};
    if (const auto safe = measureTree(package, TreeLimits{}); !safe) {
        return tl::make_unexpected(safe.error());
    }
    const auto seal = StagedPackage::sealOf(context, package);
    VX_RETURN_IF_FAILED(seal);
    context.view.notice("Checking the package.");
    return examinePackage(context.engine, package, seal->tree(), context.stop);
}

Result<Report> verify(const CloneContext& context, const std::filesystem::path& folder) {
    const auto target = openSource(context, folder);
    VX_RETURN_IF_FAILED(target);
    const auto found = examine(context, *target);
    VX_RETURN_IF_FAILED(found);
    if (context.stop.raised()) {
        return tl::make_unexpected(stopError(context.stop.signal()));
    }
    Report report{.rows = {},
                  .exitStatus = kExitOk,
                  .closing = problemSentences(found->checks, target->path()),
                  .checks = found->checks,
                  .digest = found->digest.value_or("")};
    const bool incomplete = isIncomplete(found->lacks);
    if (const auto problem = problemOf(found->checks)) {
        report.exitStatus = exitStatusOf(*problem);
    } else {
        report.closing.push_back(fmt::format("{} fits this television and is unaltered{}.",
                                             vxcommon::printable(target->path()),
                                             incomplete ? ", but is not complete" : ""));
        report.exitStatus = incomplete ? exitStatusOf(ErrorCode::CategoryFailed) : kExitOk;
    }
    for (std::string& sentence : lackSentences(found->lacks, "The package")) {
        report.closing.push_back(std::move(sentence));
    }
    report.lacks = found->lacks;
    if (found->digest) {
        report.closing.push_back("Digest " + *found->digest);
    }
    return report;
}

struct VerifyArguments {
    std::string folder;
    bool json = false;
};

}  // namespace

Result<Report> runVerify(const CloneContext& context, const std::filesystem::path& folder) {
    return unrecordedRun(context, {},
                         std::function<Result<Report>(const CloneContext&)>(
                             [&](const CloneContext& shown) { return verify(shown, folder); }));
}

void addVerifyCommand(CLI::App& app, Action& chosen) {
    const auto arguments = std::make_shared<VerifyArguments>();
    CLI::App* const verb = app.add_subcommand("verify", "Say whether a package fits here and is unaltered");
    verb->add_option("DIR", arguments->folder, "The package's folder, such as /media/usb/clone")->required();
    verb->add_flag("--json", arguments->json, "Say everything as JSON, one object a line");
    verb->callback([&chosen, arguments] {
        chosen = [arguments](CloneEngine& engine) {
            const ViewKind kind = arguments->json ? ViewKind::Json : ViewKind::Plain;
            return runCommand(engine, "verify", kind, [&](const CloneContext& context) {
                return runVerify(context, arguments->folder);
            });
        };
    });
}

}  // namespace vxclone
