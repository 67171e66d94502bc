#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "cloning_app/verbs/command.h"

namespace vxclone {

/// Adds the verb `backup`; parsing it sets `chosen`.
void addBackupCommand(CLI::App& app, Action& chosen);

/// How a backup is made.
struct BackupOptions {
    std::optional<std::string> name = {};  ///< what people call the package; none: as the folder is called
    Declared without = {};                 ///< what this television does not have
    bool onThisDisk = false;               ///< the folder may lie on the television itself
};

/// Saves the television into `folder`. Result: the report; the package in `folder` is sealed and flushed. The
/// exit status says whether a category failed or something is lacking. Errors: `folder` is unchanged; for
/// example it is on the television itself (`StickMissing`).
Result<Report> runBackup(const CloneContext& context, const std::filesystem::path& folder,
                         const BackupOptions& options = {});

}  // namespace vxclone
