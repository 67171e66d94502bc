#pragma once

#include "cloning_app/run/loading.h"

namespace vxclone {

/// What loading the package would do, category by category; nothing is changed. Of the settings and of the
/// files that travel as they are the report names every difference. Errors: the package or the television's
/// disk cannot be read.
Result<Report> tellWhatWouldBeDone(const ReadyPackage& ready, bool keepIdentity);

}  // namespace vxclone
