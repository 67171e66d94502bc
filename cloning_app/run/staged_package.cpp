#include "cloning_app/run/staged_package.h"

#include <utility>

#include "cloning_app/package/layout.h"
#include "cloning_app/package/small_file.h"
#include "cloning_app/run/restore_room.h"
#include "cloning_app/run/run_parts.h"

namespace vxclone {

namespace {

/// Far more than an identity or a seal has: one of so many bytes is refused like any other wrong one.
constexpr std::size_t kMostSealBytes = std::size_t{64} << 10U;

/// The rest of the phase is for the checks of the copy.
constexpr double kPartOfTheCopy = 0.5;

}  // namespace

StagedPackage::StagedPackage(CloneRoot root, std::string origin)
    : root_(std::make_unique<CloneRoot>(std::move(root))), origin_(std::move(origin)) {}

StagedPackage::~StagedPackage() {
    if (root_ != nullptr && !kept_) {
        static_cast<void>(root_->empty());
    }
}

Result<StagedPackage> StagedPackage::bring(const CloneContext& context, const std::filesystem::path& folder,
                                           const Reserve& reserve) {
    const auto target = openSource(context, folder);
    if (!target) {
        return tl::make_unexpected(target.error());
    }
    const auto opened = target->openPackage();
    if (!opened) {
        return tl::make_unexpected(opened.error());
    }
    context.view.notice("Copying the package from the stick, and checking it.");
    return copyOf(context, {opened->get(), target->path(), Place::Stick}, reserve);
}

Result<StagedPackage> StagedPackage::copyOf(const CloneContext& context, const Tree& package,
                                            const Reserve& reserve) {
    auto root = CloneRoot::open(context.cloneRoot);
    if (!root) {
        return tl::make_unexpected(root.error());
    }
    context.view.progress({ShownPhase::Staging});
    const TreeSize kept = reserve ? reserve(package) : TreeSize{};
    const auto tell = [&context](double part) {
        context.view.progress({ShownPhase::Staging, part * kPartOfTheCopy});
    };
    if (const auto copied = root->fillFrom(package, TreeLimits{}, context.stop, kept, tell); !copied) {
        return tl::make_unexpected(copied.error());
    }
    return StagedPackage(std::move(*root), package.path);
}

Result<StagedPackage> StagedPackage::ofSafety(const CloneContext& context, const Tree& safety) {
    const auto room = [](const Tree& /*safety*/) { return kRoomOfARun; };
    auto copied = copyOf(context, safety, room);
    if (copied || copied.error().code != ErrorCode::TelevisionFull) {
        return copied;
    }
    auto root = CloneRoot::open(context.cloneRoot);
    if (!root) {
        return tl::make_unexpected(root.error());
    }
    if (!root->fillWithLinksTo(safety, TreeLimits{})) {
        // A file system without links.
        return copyOf(context, safety);
    }
    StagedPackage staged(*std::move(root), safety.path);
    staged.linked_ = true;
    return staged;
}

Result<StagedPackage> StagedPackage::sealOf(const CloneContext& context, const Tree& package) {
    auto root = CloneRoot::open(context.cloneRoot);
    if (!root) {
        return tl::make_unexpected(root.error());
    }
    StagedPackage staged(std::move(*root), package.path);
    if (const auto emptied = staged.root_->empty(); !emptied) {
        return tl::make_unexpected(emptied.error());
    }
    for (const char* const name : {kIdentityFile, kSealFile}) {
        const auto content = readSmallFile(package, name, kMostSealBytes);
        if (!content) {
            return tl::make_unexpected(content.error());
        }
        if (!*content) {
            continue;
        }
        if (const auto written = writeSmallFile(staged.tree(), name, **content); !written) {
            return tl::make_unexpected(written.error());
        }
    }
    return staged;
}

}  // namespace vxclone
