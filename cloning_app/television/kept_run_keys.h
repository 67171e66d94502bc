#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "cloning_app/base/errors.h"

namespace vxclone {

/// What the keys hold through which the library tells how a run goes.
struct RunKeys {
    std::optional<int> percent;
    std::string results;
};

/// Notes in the data folder what the keys hold through which the library tells how a run goes, for a look at
/// the television that must leave no trace. Errors: the settings store refuses the result list; the disk says
/// no.
Result<void> keepRunKeys(const std::filesystem::path& dataFolder);

/// Gives the keys the values that were noted, if any were, and forgets them. Errors: the settings store
/// refuses one, and the values stay noted; the disk says no.
Result<void> putRunKeysBack(const std::filesystem::path& dataFolder);

/// What was noted and is not back yet: what the keys tell of the last run while a look goes on, and after one
/// that died. Result: none where nothing is noted or the note cannot be read. Changes nothing.
std::optional<RunKeys> notedRunKeys(const std::filesystem::path& dataFolder);

}  // namespace vxclone
