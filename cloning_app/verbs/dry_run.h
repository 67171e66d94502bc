#pragma once

#include "cloning_app/run/loading.h"

namespace vxclone {

/// What loading the package would do, category by category, with every difference; nothing is changed. The
/// package's staged copy gives way to what the library saves of the television for that, unless the dry run
/// is quick. `needed` is how much room that takes. The exit status is 1 where something could not be
/// compared. Errors: the package cannot be read; those of `lookForComparison`.
Result<Report> tellWhatWouldBeDone(const CloneContext& context, const ReadyPackage& ready,
                                   const RestoreOptions& options, const TreeSize& needed);

}  // namespace vxclone
