#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "cloning_app/package/clone_root.h"
#include "cloning_app/run/clone_run.h"

namespace vxclone {

/// A package from a stick in the television's clone folder, where nobody can change it any more: what was
/// examined there is what is loaded. Unless it is kept, its end empties the folder.
class StagedPackage {
 public:
    /// Checks that `folder` is a package of safe entries and copies it, where the disk has room for `reserve`
    /// besides. On failure nothing of it is left in
    /// the clone folder. Errors: those of `openTarget`, `StickTarget::openPackage`, `walkTree` and
    /// `CloneRoot`.
    static Result<StagedPackage> bring(const CloneContext& context, const std::filesystem::path& folder,
                                       const TreeSize& reserve = {});
    /// The same of an open folder of the television's own.
    static Result<StagedPackage> copyOf(const CloneContext& context, const Tree& package,
                                        const TreeSize& reserve = {});

    StagedPackage(StagedPackage&&) = default;
    StagedPackage& operator=(StagedPackage&&) = delete;
    StagedPackage(const StagedPackage&) = delete;
    StagedPackage& operator=(const StagedPackage&) = delete;
    ~StagedPackage();

    Tree tree() const { return root_->tree(); }
    /// Where on the stick it came from.
    const std::string& origin() const { return origin_; }
    /// From now on it stays when this object ends.
    void keep() { kept_ = true; }
    /// From now on it goes with this object.
    void discard() { kept_ = false; }

 private:
    StagedPackage(CloneRoot root, std::string origin);

    std::unique_ptr<CloneRoot> root_;
    std::string origin_;
    bool kept_ = false;
};

}  // namespace vxclone
