#pragma once

#include <optional>
#include <string>
#include <vector>

#include "cloning_app/report/comparison.h"
#include "cloning_app/run/staged_package.h"

namespace vxclone {

/// What a television is compared with after a restore.
struct Expectation {
    ComparedState package;                     ///< what was loaded; settings that are kept are not in it
    std::optional<ComparedState> before = {};  ///< what the television held before, where that is known
    bool everything = false;                   ///< all of the package was loaded
};

/// What came of a comparison.
struct Comparison {
    std::vector<Difference> differences;      ///< first: the package, second: the television
    std::vector<std::string> sentences = {};  ///< what belongs to no category
    bool complete = true;  ///< all that can be read back was, and no application is in doubt
    bool stopped = false;  ///< a stop came before anything was compared
};

/// Compares what the television holds, `after`, with what was expected, and says in the rows of a restore
/// what was found for each; `unsaved` are the rows of the backup that was made to look, which failed. What an
/// application holds is told apart by its bytes alone, which need not mean a difference; so that is never
/// called one.
Comparison compareRows(const Expectation& expected, const ComparedState& after,
                       const std::vector<Row>& unsaved, std::vector<Row>& rows);

/// Backs the television up again, into the clone folder of `package`, and compares. The library's result list
/// is that of the restore afterwards. It does not fail: what cannot be read back is a sentence of the result.
Comparison readBack(const CloneContext& context, const StagedPackage& package, const Expectation& expected,
                    std::vector<Row>& rows);

}  // namespace vxclone
