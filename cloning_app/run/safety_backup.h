#pragma once

#include <optional>

#include "cloning_app/record/run_record.h"
#include "cloning_app/report/comparison.h"
#include "cloning_app/run/loading.h"
#include "cloning_app/run/staged_package.h"

namespace vxclone {

/// How much of the disk a safety backup needs, as far as that can be told before it is made: what the
/// television has of the files that travel as they are, and as much of the rest as the package has.
TreeSize safetyReserve(const Tree& package);

/// Backs the television up before the package is loaded, and keeps the backup beside the clone folder in
/// place of the one before; the staged package is where it was afterwards. The backup holds all that the load
/// may change, but for what `without` declares: one that lacks something is made once more, and then it is an
/// error. While the record says that the television is half changed, the safety backup that is there is kept
/// instead: only that one knows how it was. Result: what the television holds; none where no backup was made.
/// Errors: the safety backup before is there, the staged package is not; the sentence says how to go on.
Result<std::optional<ComparedState>> keepSafety(const CloneContext& context, const ReadyPackage& ready,
                                                const Declared& without, const RunRecord& record);

}  // namespace vxclone
