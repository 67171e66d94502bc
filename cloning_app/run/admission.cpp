#include "cloning_app/run/admission.h"

#include <fmt/format.h>

#include "cloning_app/run/identity_check.h"
#include "common/terminal_table.h"

namespace vxclone {

namespace {

std::string overrideWarning(const Check& model) {
    return fmt::format(
        "WARNING: the package is from another model: this television is a {}, the package is from a {}. "
        "It is restored all the same, because of --force-model; what the models do not share may not work.",
        vxcommon::printable(model.television), vxcommon::printable(model.package));
}

/// Lets only the package in that the user has inspected. `expected` is the beginning of its digest, or empty.
Result<void> expectDigest(const Examination& found, const std::string& expected, const std::string& path) {
    if (expected.empty() || (found.digest && found.digest->substr(0, expected.size()) == expected)) {
        return {};
    }
    const std::string whatItIs =
        found.digest ? "has the digest " + *found.digest : std::string("has no manifest, and so no digest");
    return failure(ErrorCode::Altered,
                   fmt::format("{} is not the expected package: it {}, not {}; take the package that was "
                               "inspected",
                               vxcommon::printable(path), whatItIs, expected));
}

/// What of a good examination is shown with the result of a restore.
std::vector<Check> shownOf(const std::vector<Check>& checks, bool overridden) {
    std::vector<Check> shown;
    if (!overridden) {
        shown.push_back({Subject::Identity, Finding::Verified});
    }
    for (const Check& check : checks) {
        const bool ofIdentity = check.subject == Subject::Model || check.subject == Subject::ProductTag ||
                                check.subject == Subject::Tuner;
        if (check.subject == Subject::Seal || check.finding == Finding::Unaltered) {
            shown.push_back({check.subject, Finding::Verified});
        } else if (overridden || !ofIdentity) {
            shown.push_back(check);
        }
    }
    return shown;
}

}  // namespace

Result<Examination> admit(const CloneContext& context, const StagedPackage& package,
                          const RestoreOptions& options) {
    auto found = examinePackage(context.engine, package.tree(), package.tree(), context.stop);
    if (!found) {
        return found;
    }
    const bool overridden = options.forceModel && overrideModel(found->checks);
    if (const auto problem = problemOf(found->checks)) {
        return failure(
            *problem,
            fmt::format("{}", fmt::join(problemSentences(found->checks, package.origin()), "; also: ")));
    }
    if (const auto right = expectDigest(*found, options.expect, package.origin()); !right) {
        return tl::make_unexpected(right.error());
    }
    if (overridden) {
        context.view.notice(overrideWarning(found->checks.front()));
    }
    return Examination{shownOf(found->checks, overridden), found->digest, std::move(found->lacks)};
}

}  // namespace vxclone
