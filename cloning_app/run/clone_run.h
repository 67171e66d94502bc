#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "cloning_app/package/disk_calls.h"
#include "cloning_app/package/mounts.h"
#include "cloning_app/run/clone_engine.h"
#include "cloning_app/run/progress_view.h"
#include "cloning_app/run/stop_flag.h"

namespace vxclone {

/// What a run works with; everything stays the caller's.
struct CloneContext {
    CloneEngine& engine;
    ProgressView& view;
    const StopFlag& stop;
    std::filesystem::path cloneRoot;   ///< where the engine writes and reads
    DiskCalls disk = realDiskCalls();  ///< for what is written to the stick
    MountQuestions mounts = realMountQuestions();
};

/// How a backup is made.
struct BackupOptions {
    std::optional<std::string> name = {};  ///< what people call the package; none: as the folder is called
    Declared without = {};                 ///< what this television does not have
    bool onThisDisk = false;               ///< the folder may lie on the television itself
};

/// Saves the television into `folder`. Result: the report, the package being sealed and flushed in `folder`;
/// its exit status says whether a category failed or something is lacking. Errors: `folder` is as it was,
/// such as where it lies on the television itself (`StickMissing`).
Result<Report> runBackup(const CloneContext& context, const std::filesystem::path& folder,
                         const BackupOptions& options = {});

/// What of a package is restored, and how.
struct RestoreOptions {
    std::vector<VXClone> list;
    bool forceModel = false;    ///< load a package of another model, if nothing else is wrong with it
    bool everything = false;    ///< the list is all there is because nobody chose
    std::string expect = {};    ///< the beginning of the only manifest digest that is let in; empty: any is
    bool safety = true;         ///< back the television up first
    bool readBack = true;       ///< back it up again afterwards, and compare
    bool keepIdentity = false;  ///< leave the settings that belong to this television as they are
    bool dryRun = false;        ///< do everything up to the run, and say what would be done
    Declared without = {};      ///< what this television does not have
    bool quick = false;         ///< of a dry run: compare settings and pictures alone
};

/// Loads the categories of the package in `folder` into the television, if it fits and is unaltered. What the
/// package lacks is left as it is. Result: the report; its exit status says whether a category failed,
/// differs or is lacking. Errors: nothing of the television was touched before the run began, and the clone
/// folder is empty unless it was not yet touched either.
Result<Report> runRestore(const CloneContext& context, const std::filesystem::path& folder,
                          const RestoreOptions& options);

/// Loads the safety backup of the last restore, in the same way; it stays what it is. Errors: those of
/// `runRestore`; `NoSafetyBackup`.
Result<Report> runUndo(const CloneContext& context, bool readBack);

/// Finds out whether the package in `folder` fits the television and is unaltered, on a copy of it in the
/// clone folder, which is emptied at the end. Result: the report with every finding; its exit status is that
/// of the gravest, in the order of `problemOf`. Errors: there is no package to examine, or that failed.
Result<Report> runVerify(const CloneContext& context, const std::filesystem::path& folder);

/// Shows the result as the run's end. Result: the exit status.
int conclude(const Result<Report>& result, ProgressView& view);

}  // namespace vxclone
