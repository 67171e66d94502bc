#include "cloning_app/run/visit.h"

#include <system_error>
#include <utility>

#include "cloning_app/storage/clone_root.h"
#include "cloning_app/storage/kept_content.h"
#include "cloning_app/television/kept_run_keys.h"

namespace vxclone {

namespace {

constexpr const char* kPutRight =
    "A comparison broke off: what lay in the television's clone folder is there again.";

/// Puts back what lay in the clone folder. Result: whether anything was aside.
Result<bool> putCloneFolderBack(const std::filesystem::path& cloneRoot) {
    const auto dataFolder = recordFolderOf(cloneRoot);
    const auto aside = isContentAside(dataFolder);
    if (!aside || !*aside) {
        return aside;
    }
    return CloneRoot::open(cloneRoot).and_then(
        [&](const CloneRoot& root) { return putContentBack(dataFolder, root.tree()); });
}

/// None where there is no such folder; `unknown` where nobody can tell.
std::optional<std::filesystem::perms> modeOf(const std::filesystem::path& folder) {
    std::error_code reason;
    const auto status = std::filesystem::status(folder, reason);
    return status.type() == std::filesystem::file_type::not_found ? std::nullopt
                                                                  : std::optional(status.permissions());
}

}  // namespace

Result<void> endDeadVisit(const CloneContext& context) {
    const auto put = putCloneFolderBack(context.cloneRoot);
    VX_RETURN_IF_FAILED(put);
    if (*put) {
        context.view.notice(kPutRight);
    }
    return putRunKeysBack(recordFolderOf(context.cloneRoot));
}

Visit::Visit(LookHold hold, std::filesystem::path cloneRoot, std::optional<std::filesystem::perms> mode)
    : hold_(std::make_unique<LookHold>(std::move(hold))), cloneRoot_(std::move(cloneRoot)), mode_(mode) {}

Visit::~Visit() {
    static_cast<void>(end());
}

Result<Visit> Visit::begin(const CloneContext& context) {
    auto hold = LookHold::begin(recordFolderOf(context.cloneRoot));
    VX_RETURN_IF_FAILED(hold);
    VX_RETURN_IF_FAILED(endDeadVisit(context));
    const auto mode = modeOf(context.cloneRoot);
    const auto aside = CloneRoot::open(context.cloneRoot).and_then([&](const CloneRoot& root) {
        return setContentAside(recordFolderOf(context.cloneRoot), root.tree());
    });
    VX_RETURN_IF_FAILED(aside);
    return Visit(std::move(*hold), context.cloneRoot, mode);
}

Result<void> Visit::end() {
    if (hold_ == nullptr) {
        return {};
    }
    const auto hold = std::move(hold_);
    const auto put = putCloneFolderBack(cloneRoot_);
    std::error_code stays;
    if (mode_ && mode_ != std::filesystem::perms::unknown) {
        std::filesystem::permissions(cloneRoot_, *mode_, stays);
    } else if (!mode_ && put) {
        std::filesystem::remove(cloneRoot_, stays);
    }
    const auto keys = putRunKeysBack(recordFolderOf(cloneRoot_));
    return put ? keys : tl::make_unexpected(put.error());
}

}  // namespace vxclone
