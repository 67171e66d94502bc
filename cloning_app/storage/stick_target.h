#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>

#include "cloning_app/base/disk_calls.h"
#include "cloning_app/base/tree_walk.h"

namespace vxclone {

/// The folder on the stick that the user named: where a backup goes and a restore comes from.
///
/// A backup is written beside the folder and takes its place in one step, so that the folder holds the old
/// package or the new one, whole, whatever happens in between. What a backup that was cut off leaves beside
/// the folder is recognised: the next backup puts it right, and whoever only reads finds the package.
class StickTarget {
 public:
    /// Finds the place of `folder`, which itself need not exist; nothing is changed. Errors: no place for
    /// it (`StickMissing`), or it is a mount point (`MountPoint`) and so cannot be replaced.
    static Result<StickTarget> open(const std::filesystem::path& folder, DiskCalls calls = realDiskCalls());

    const std::string& path() const { return path_; }
    const std::string& name() const { return name_; }
    /// The folder in which the user's folder is or will be; its descriptor stays the target's.
    Tree parent() const;

    /// Tells whether the folder is a whole package.
    using Judge = std::function<bool(const Tree& package)>;
    /// For a backup: puts right what an interrupted one left. A package that was set aside goes back to its
    /// name, and is removed only where a whole one stands there. Result: the sentence that says so, or none
    /// when there was nothing to do. Leftovers that cannot be removed do no harm and stay. Errors: another
    /// backup is at work there (`TelevisionBusy`); something else stands at the name of the package that was
    /// set aside (`NotAPackage`); the stick says no.
    Result<std::optional<std::string>> recover(const Judge& isWhole);

    /// For whoever only reads: where nothing but an interrupted backup's previous package is there, that one
    /// is meant from now on. Nothing is changed. Result: the sentence that says so, or none.
    Result<std::optional<std::string>> meanWhatWasSetAside();

    /// Whether a backup may take the folder's place: it is missing, empty, or a clone package. Errors:
    /// `NotAPackage`, so that nobody's pictures are replaced.
    Result<void> checkReplaceable() const;

    /// Whether the path still leads to where it led at the beginning. Errors: `StickMissing`, the stick was
    /// taken out or another one is there; what was written since then is not on it.
    Result<void> checkInPlace() const;

    /// The folder, open for reading, when it is a clone package. Errors: `NotAPackage`, `Unreadable`.
    Result<Descriptor> openPackage() const;

 private:
    friend class Replacement;
    StickTarget(Descriptor parent, std::string parentPath, std::string name, DiskCalls calls);

    Result<bool> isFolder(const std::string& name) const;
    Result<bool> isVacant() const;
    Result<bool> putBack();
    tl::unexpected<Error> twoPackages() const;
    Result<Descriptor> openFolder() const;
    Result<bool> holdsKnownEntry(int directory, bool& empty) const;

    Descriptor parent_;
    std::string name_;
    std::string path_;
    std::string newName_;
    std::string oldName_;
    DiskCalls calls_;
};

/// A package on its way to the stick: an empty folder beside the target, to be filled and then put in the
/// target's place. Unless it was committed, its end removes it and the target is as it was. The target must
/// outlive it.
class Replacement {
 public:
    /// Makes the empty folder. Errors: the stick cannot be written; another backup is at work there
    /// (`TelevisionBusy`).
    static Result<Replacement> begin(StickTarget& target);
    Replacement(Replacement&& other) noexcept;
    Replacement& operator=(Replacement&&) = delete;
    Replacement(const Replacement&) = delete;
    Replacement& operator=(const Replacement&) = delete;
    ~Replacement();

    Tree tree() const;
    /// Lets the filled and flushed folder take the target's place, flushes that, and removes the old
    /// package. On failure the target is as it was; only where the old package cannot be removed, or that
    /// removal not be flushed, does the target hold the new one, and the error says so.
    Result<void> commit();

 private:
    Replacement(StickTarget& target, Descriptor folder);
    /// Flushes the move; where that fails, `undo` moves back.
    Result<void> settle(const std::function<int()>& undo);
    Result<void> removePrevious(const std::string& name);
    Result<void> swapInTwoSteps();
    int rename(const std::string& from, const std::string& to, unsigned flags = 0);
    tl::unexpected<Error> failed(int errorNumber) const;

    StickTarget* target_;
    Descriptor folder_;    ///< held for this process as long as it is at work
    Descriptor previous_;  ///< the package before, once it may be removed; held as well
};

}  // namespace vxclone
