#include <fmt/format.h>

#include "cloning_app/run/integrity.h"
#include "cloning_app/run/recorded_run.h"
#include "cloning_app/run/staged_package.h"
#include "common/terminal_table.h"

namespace vxclone {

namespace {

Result<Report> verify(const CloneContext& context, const std::filesystem::path& folder) {
    const auto package = StagedPackage::bring(context, folder);
    if (!package) {
        return tl::make_unexpected(package.error());
    }
    const auto found = examinePackage(context.engine, package->tree());
    if (!found) {
        return tl::make_unexpected(found.error());
    }
    if (context.stop.raised()) {
        return tl::make_unexpected(stopError(context.stop.signal()));
    }
    Report report{Direction::Restore,
                  {},
                  kExitOk,
                  problemSentences(found->checks, package->origin()),
                  found->checks,
                  found->digest.value_or("")};
    if (const auto problem = problemOf(found->checks)) {
        report.exitStatus = exitStatusOf(*problem);
    } else {
        report.closing.push_back(
            fmt::format("{} fits this television and is unaltered.", vxcommon::printable(package->origin())));
    }
    if (found->digest) {
        report.closing.push_back("Digest " + *found->digest);
    }
    return report;
}

}  // namespace

Result<Report> runVerify(const CloneContext& context, const std::filesystem::path& folder) {
    return unrecordedRun(context, [&] { return verify(context, folder); });
}

}  // namespace vxclone
