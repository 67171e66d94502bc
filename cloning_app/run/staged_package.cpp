#include "cloning_app/run/staged_package.h"

#include <fmt/format.h>
#include <sys/statvfs.h>

#include <algorithm>
#include <system_error>
#include <utility>

#include "cloning_app/base/small_file.h"
#include "cloning_app/check/integrity.h"
#include "cloning_app/package/layout.h"
#include "cloning_app/record/run_record.h"
#include "cloning_app/storage/own_folders.h"
#include "cloning_app/storage/safety_store.h"
#include "common/terminal_table.h"

namespace vxclone {

namespace {

/// Far more than an identity or a seal has: one of so many bytes is refused like any other wrong one.
constexpr std::size_t kMostSealBytes = std::size_t{64} << 10U;

/// The rest of the phase is for the checks of the copy.
constexpr double kPartOfTheCopy = 0.5;

/// Less than this is what is left once somebody was refused room.
constexpr std::uint64_t kLeastRoom = std::uint64_t{64} << 10U;
constexpr std::uint64_t kLeastFiles = 2;

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

/// Whether one of the two lies in the other, or they are the same.
bool overlap(const std::filesystem::path& one, const std::filesystem::path& other) {
    const auto [oneEnd, otherEnd] = std::mismatch(one.begin(), one.end(), other.begin(), other.end());
    return oneEnd == one.end() || otherEnd == other.end();
}

std::filesystem::path canonicalFolder(const std::filesystem::path& path) {
    std::error_code unresolved;
    std::filesystem::path result = std::filesystem::weakly_canonical(path, unresolved);
    if (unresolved) {
        result = path.lexically_normal();
    }
    return result.filename().empty() ? result.parent_path() : result;
}

/// The folder, if it is none of the television's own.
Result<StickTarget> openForeign(const CloneContext& context, const std::filesystem::path& folder) {
    auto target = StickTarget::open(folder, context.disk);
    if (!target) {
        return target;
    }
    const std::string path = vxcommon::printable(target->path());
    if (overlap(canonicalFolder(target->path()), canonicalFolder(context.cloneRoot))) {
        return failure(ErrorCode::BadArguments,
                       path + " is the television's own clone folder; name a folder on the stick");
    }
    if (isOwnFolder(target->parent(), target->name(), recordFolderOf(context.cloneRoot))) {
        return failure(ErrorCode::BadArguments,
                       path +
                           " lies where vxclone keeps its own data on this television; "
                           "name a folder on the stick, or go back with vxclone undo");
    }
    return target;
}

Result<StickTarget> withNotice(const CloneContext& context, StickTarget target,
                               const Result<std::optional<std::string>>& said) {
    VX_RETURN_IF_FAILED(said);
    if (*said) {
        context.view.notice(**said);
    }
    return target;
}

/// Whether the package is unaltered. One of another kind of television may be whole.
bool isWhole(const CloneContext& context, const Tree& package) {
    const auto seal = StagedPackage::sealOf(context, package);
    const auto found = seal ? examinePackage(context.engine, package, seal->tree(), context.stop)
                            : tl::make_unexpected(seal.error());
    return found && std::all_of(found->checks.begin(), found->checks.end(), [](const Check& check) {
               return problemOf(check).value_or(ErrorCode::DoesNotFit) == ErrorCode::DoesNotFit;
           });
}

}  // namespace

Result<StickTarget> openSource(const CloneContext& context, const std::filesystem::path& folder) {
    auto target = openForeign(context, folder);
    if (!target) {
        return target;
    }
    const auto said = target->meanWhatWasSetAside();
    return withNotice(context, *std::move(target), said);
}

Result<StickTarget> openTarget(const CloneContext& context, const std::filesystem::path& folder) {
    auto target = openForeign(context, folder);
    if (!target) {
        return target;
    }
    const auto said = target->recover([&context](const Tree& package) { return isWhole(context, package); });
    return withNotice(context, *std::move(target), said);
}

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
    VX_RETURN_IF_FAILED(target);
    const auto opened = target->openPackage();
    VX_RETURN_IF_FAILED(opened);
    context.view.notice("Copying the package from the stick, and checking it.");
    return copyOf(context, {opened->get(), target->path(), Place::Stick}, reserve);
}

Result<StagedPackage> StagedPackage::copyOf(const CloneContext& context, const Tree& package,
                                            const Reserve& reserve) {
    auto root = CloneRoot::open(context.cloneRoot);
    VX_RETURN_IF_FAILED(root);
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
    // It was taken for this moment.
    if (const auto store = SafetyStore::open(recordFolderOf(context.cloneRoot))) {
        store->giveRoomBack();
    }
    auto root = CloneRoot::open(context.cloneRoot);
    VX_RETURN_IF_FAILED(root);
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
    VX_RETURN_IF_FAILED(root);
    StagedPackage staged(std::move(*root), package.path);
    VX_RETURN_IF_FAILED(staged.root_->empty());
    for (const char* const name : {kIdentityFile, kSealFile}) {
        const auto content = readSmallFile(package, name, kMostSealBytes);
        VX_RETURN_IF_FAILED(content);
        if (!*content) {
            continue;
        }
        VX_RETURN_IF_FAILED(writeSmallFile(staged.tree(), name, **content));
    }
    return staged;
}

TreeSize loadReserve(const Tree& package) {
    return together(measureTree(package, TreeLimits{}).value_or(TreeSize{}), kRoomOfARun);
}

TreeSize together(const TreeSize& one, const TreeSize& other) {
    return {one.entries + other.entries, one.files + other.files, one.bytes + other.bytes};
}

bool isFull(const Tree& folder) {
    struct statvfs facts {};
    if (fstatvfs(folder.descriptor, &facts) != 0) {
        return false;
    }
    const bool noBytes = facts.f_blocks != 0 && std::uint64_t{facts.f_bavail} * facts.f_frsize < kLeastRoom;
    return noBytes || (facts.f_files != 0 && facts.f_favail < kLeastFiles);
}

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
    VX_RETURN_IF_FAILED(expectDigest(*found, options.expect, package.origin()));
    if (overridden) {
        context.view.notice(overrideWarning(found->checks.front()));
    }
    return Examination{.checks = shownOf(found->checks, overridden),
                       .digest = found->digest,
                       .lacks = std::move(found->lacks)};
}

}  // namespace vxclone
