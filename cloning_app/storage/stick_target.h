#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>

#include "cloning_app/base/disk_calls.h"
#include "cloning_app/base/tree_walk.h"

namespace vxclone {

/// The user's folder on the stick, to which a backup writes and from which a restore reads.
///
/// A backup is written beside the folder and replaces it in one step, so the folder always holds the complete
/// old or the complete new package. Leftovers of an interrupted backup are recognised: the next backup cleans
/// them up, and a command that only reads uses the package among them.
class StickTarget {
 public:
    /// Finds the place of `folder`, which need not exist. Nothing is changed. Errors: its parent does not
    /// exist (`StickMissing`), or it is a mount point (`MountPoint`) and cannot be replaced.
    static Result<StickTarget> open(const std::filesystem::path& folder, DiskCalls calls = realDiskCalls());

    const std::string& path() const { return path_; }
    const std::string& name() const { return name_; }
    /// The parent of the user's folder. The target owns its descriptor.
    Tree parent() const;

    /// Returns whether the folder is a complete package.
    using Judge = std::function<bool(const Tree& package)>;
    /// For a backup: cleans up after an interrupted one. A package that was set aside gets its name back; it
    /// is removed only if a complete package has that name. Result: a sentence about this, or empty if there
    /// was nothing to do. Leftovers that cannot be removed do no harm and stay. Errors: another backup is
    /// working there (`TelevisionBusy`); something else has the name of the package that was set aside
    /// (`NotAPackage`); a failure of the stick.
    Result<std::optional<std::string>> recover(const Judge& isWhole);

    /// For commands that only read: if there is only the previous package of an interrupted backup, this
    /// object refers to it from now on. Nothing is changed. Result: a sentence about this, or empty.
    Result<std::optional<std::string>> meanWhatWasSetAside();

    /// Checks that a backup may replace the folder: it is missing, empty, or a clone package. Errors:
    /// `NotAPackage`, so that no other files are lost.
    Result<void> checkReplaceable() const;

    /// Checks that the path still leads to the same folder as at the beginning. Errors: `StickMissing`: the
    /// stick was pulled out or exchanged, so the written data is not on it.
    Result<void> checkInPlace() const;

    /// The folder, open for reading, if it is a clone package. Errors: `NotAPackage`, `Unreadable`.
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

/// A package that is being written to the stick: an empty folder beside the target, which is filled and then
/// replaces the target. Without a commit, the destructor removes it, and the target is unchanged. The target
/// must outlive it.
class Replacement {
 public:
    /// Creates the empty folder. Errors: the stick cannot be written; another backup is working there
    /// (`TelevisionBusy`).
    static Result<Replacement> begin(StickTarget& target);
    Replacement(Replacement&& other) noexcept;
    Replacement& operator=(Replacement&&) = delete;
    Replacement(const Replacement&) = delete;
    Replacement& operator=(const Replacement&) = delete;
    ~Replacement();

    Tree tree() const;
    /// Replaces the target by the filled and flushed folder, flushes this change, and removes the old
    /// package. On failure the target is unchanged. There is one exception: if the old package cannot be
    /// removed, or this removal cannot be flushed, the target holds the new package, and the error says so.
    Result<void> commit();

 private:
    Replacement(StickTarget& target, Descriptor folder);
    /// Flushes the renaming. If this fails, `undo` reverses it.
    Result<void> settle(const std::function<int()>& undo);
    Result<void> removePrevious(const std::string& name);
    Result<void> swapInTwoSteps();
    int rename(const std::string& from, const std::string& to, unsigned flags = 0);
    tl::unexpected<Error> failed(int errorNumber) const;

    StickTarget* target_;
    Descriptor folder_;    ///< locked during the work
    Descriptor previous_;  ///< the previous package, once it may be removed; also locked
};

}  // namespace vxclone
