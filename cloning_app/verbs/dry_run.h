#pragma once

#include "cloning_app/run/loading.h"

namespace vxclone {

/// The effect of loading the package, category by category, with every difference. Nothing is changed. Unless
/// the dry run is quick, the library saves the television for the comparison, and this replaces the package's
/// staged copy. `needed` is the room for that. The exit status is 1 if something could not be compared.
/// Errors: the package cannot be read; those of `lookForComparison`.
Result<Report> tellWhatWouldBeDone(const CloneContext& context, const ReadyPackage& ready,
                                   const RestoreOptions& options, const TreeSize& needed);

}  // namespace vxclone
