#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string>

#include "cloning_app/package/clone_root.h"
#include "cloning_app/run/clone_run.h"

namespace vxclone {

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

}  // namespace vxclone
