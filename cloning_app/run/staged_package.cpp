#include "cloning_app/run/staged_package.h"

#include <utility>

#include "cloning_app/run/run_parts.h"

namespace vxclone {

StagedPackage::StagedPackage(CloneRoot root, std::string origin)
    : root_(std::make_unique<CloneRoot>(std::move(root))), origin_(std::move(origin)) {}

StagedPackage::~StagedPackage() {
    if (root_ != nullptr && !kept_) {
        static_cast<void>(root_->empty());
    }
}

Result<StagedPackage> StagedPackage::bring(const CloneContext& context, const std::filesystem::path& folder,
                                           const TreeSize& reserve) {
    const auto target = openTarget(context, folder);
    if (!target) {
        return tl::make_unexpected(target.error());
    }
    const auto opened = target->openPackage();
    if (!opened) {
        return tl::make_unexpected(opened.error());
    }
    return copyOf(context, {opened->get(), target->path(), Place::Stick}, reserve);
}

Result<StagedPackage> StagedPackage::copyOf(const CloneContext& context, const Tree& package,
                                            const TreeSize& reserve) {
    auto root = CloneRoot::open(context.cloneRoot);
    if (!root) {
        return tl::make_unexpected(root.error());
    }
    if (const auto copied = root->fillFrom(package, TreeLimits{}, context.stop, reserve); !copied) {
        return tl::make_unexpected(copied.error());
    }
    return StagedPackage(std::move(*root), package.path);
}

}  // namespace vxclone
