#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string>

#include "cloning_app/base/tree_copy.h"
#include "cloning_app/check/integrity.h"
#include "cloning_app/run/clone_run.h"
#include "cloning_app/storage/clone_root.h"
#include "cloning_app/storage/stick_target.h"

namespace vxclone {

/// Finds the folder that the user named to read from; nothing there is changed. Errors: those of
/// `StickTarget`, or the folder is the television's own (`BadArguments`).
Result<StickTarget> openSource(const CloneContext& context, const std::filesystem::path& folder);

/// The same to back up to: puts right what an interrupted backup left there.
Result<StickTarget> openTarget(const CloneContext& context, const std::filesystem::path& folder);

/// A package from a stick in the television's clone folder, where nobody can change it any more: what was
/// examined there is what is loaded. Unless it is kept, its end empties the folder.
class StagedPackage {
 public:
    /// How much room the disk must have beside a copy of the package.
    using Reserve = std::function<TreeSize(const Tree& package)>;

    /// Checks that `folder` is a package of safe entries and copies it, where the disk has room for that and
    /// the reserve. On failure nothing of it is left in the clone folder. Errors: those of `openTarget`,
    /// `StickTarget::openPackage`, `walkTree` and `CloneRoot`.
    static Result<StagedPackage> bring(const CloneContext& context, const std::filesystem::path& folder,
                                       const Reserve& reserve = {});
    /// The same of an open folder of the television's own.
    static Result<StagedPackage> copyOf(const CloneContext& context, const Tree& package,
                                        const Reserve& reserve = {});

    /// The same of the television's own safety backup, also where the disk is full: where a copy does not
    /// leave room for a load, its files get a second name in the clone folder, which goes with this object in
    /// any case. What writes into them would write into the safety backup.
    static Result<StagedPackage> ofSafety(const CloneContext& context, const Tree& safety);

    /// The same of nothing but the identity and the seal, for an examination of the rest where it lies.
    static Result<StagedPackage> sealOf(const CloneContext& context, const Tree& package);

    StagedPackage(StagedPackage&&) = default;
    StagedPackage& operator=(StagedPackage&&) = delete;
    StagedPackage(const StagedPackage&) = delete;
    StagedPackage& operator=(const StagedPackage&) = delete;
    ~StagedPackage();

    Tree tree() const { return root_->tree(); }
    /// Where on the stick it came from.
    const std::string& origin() const { return origin_; }
    /// From now on it stays when this object ends.
    void keep() { kept_ = !linked_; }
    /// From now on it goes with this object.
    void discard() { kept_ = false; }

 private:
    StagedPackage(CloneRoot root, std::string origin);

    std::unique_ptr<CloneRoot> root_;
    std::string origin_;
    bool linked_ = false;
    bool kept_ = false;
};

/// What a restore writes on the television's disk beside the files of the package. The settings store keeps a
/// journal, which it writes back once that has 4 MiB; the rest is for the log, the services' databases and
/// the record of the run. A store that has no room in the middle leaves the television half restored.
inline constexpr TreeSize kRoomOfARun = {64, 0, std::uint64_t{6} << 20U};

/// How much room a load of the package needs beside the package in the clone folder: its files once more,
/// which services and folders take over before they give up what they had, and `kRoomOfARun`.
TreeSize loadReserve(const Tree& package);

/// Both together.
TreeSize together(const TreeSize& one, const TreeSize& other);

/// Whether the disk of this folder has next to no room left, in bytes or in files. False where nobody can
/// tell.
bool isFull(const Tree& folder);

/// Lets a staged package in that fits, is unaltered and is the one that the user expects. Result: what was
/// examined, for the table. Errors: those of `examinePackage`; the gravest of what was found.
Result<Examination> admit(const CloneContext& context, const StagedPackage& package,
                          const RestoreOptions& options);

}  // namespace vxclone
