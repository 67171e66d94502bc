#pragma once

#include <filesystem>

#include "cloning_app/errors.h"

namespace vxclone {

/// Notes in the data folder what the keys hold through which the library tells how a run goes, for a look at
/// the television that must leave no trace. Errors: the settings store refuses the result list; the disk says
/// no.
Result<void> keepRunKeys(const std::filesystem::path& dataFolder);

/// Gives the keys the values that were noted, if any were, and forgets them. Errors: the settings store
/// refuses one, and the values stay noted; the disk says no.
Result<void> putRunKeysBack(const std::filesystem::path& dataFolder);

}  // namespace vxclone
