#pragma once

#include <filesystem>

#include "cloning_app/report/output.h"
#include "cloning_app/run/clone_run.h"

namespace vxclone {

// What changes something: the television, or a stick.

/// Saves the television into `folder`. Result: the report, the package being sealed and flushed in `folder`;
/// its exit status says whether a category failed or something is lacking. Errors: `folder` is as it was,
/// such as where it lies on the television itself (`StickMissing`).
Result<Report> runBackup(const CloneContext& context, const std::filesystem::path& folder,
                         const BackupOptions& options = {});

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

// What a person wants to know of packages where they lie. Nothing is copied and nothing changed, on the stick
// or on the television; the library checks no seal for it.

/// What is in the package in `folder`. `everyFile` names each of its files to people as well. Errors: there
/// is no package, or it cannot be read.
Result<Output> inspectPackage(const std::filesystem::path& folder, bool everyFile);

/// What sets this television apart from the package in `folder`. The library saves the television into its
/// clone folder for that, unless it shall be `quick`: then settings and pictures alone are compared. The
/// television and its clone folder are afterwards as they were. The exit status is 0 where nothing differs
/// and nothing was left out but for `quick`, else 1. Errors: there is no package, or it cannot be read, or
/// its settings file is damaged; those of `unrecordedRun` and `lookForComparison`.
Result<Output> diffWithTelevision(const CloneContext& context, const std::filesystem::path& folder,
                                  bool quick);

/// What sets the package in `folder` apart from the one in `other`, all of it. The exit status tells whether
/// anything does. Errors: there is no package, or it cannot be read, or its settings file is damaged.
Result<Output> diffPackages(const std::filesystem::path& folder, const std::filesystem::path& other);

/// The packages in the folder and in those up to two levels below it, and whether they fit. Errors: there is
/// no such folder, or it cannot be read.
Result<Output> listPackages(const std::filesystem::path& folder);

/// Where sticks are found.
inline constexpr const char* kMediaFolder = "/media";

}  // namespace vxclone
