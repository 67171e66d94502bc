#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "cloning_app/run/check.h"
#include "cloning_app/run/result_list.h"
#include "common/terminal_table.h"

namespace vxclone {

/// What became of a category.
enum class Verdict { Done, Failed, NotEvaluated, NotReported, NotInBackup, NotChosen, NotPossible };

/// One line of the table at the end of a run.
struct Row {
    VXClone category;
    Verdict verdict;
    std::string detail = {};   ///< may be empty
    std::string subject = {};  ///< whose outcome it is, where a category has several; may be empty
};

/// The verdict in JSON, for people, and its colour.
std::string_view nameOf(Verdict verdict);
std::size_t verdictCount();
/// The verdict of that name in JSON.
std::optional<Verdict> verdictNamed(std::string_view name);
std::string_view wordsOf(Verdict verdict);
vxcommon::Colour colourOf(Verdict verdict);

/// What the row says of its category: the verdict in words and the detail.
std::string textOf(const Row& row);

/// The row for an outcome that the library reported.
Row rowOf(const Outcome& outcome, Direction direction);

/// The rows of all 15 categories in the library's order; a category that reported several times has several.
/// `own` are vxclone's own findings, which stand in place of the library's.
std::vector<Row> tableRows(Direction direction, const std::vector<VXClone>& chosen,
                           const std::vector<Outcome>& outcomes, const std::vector<Row>& own);

/// Whether a category failed that is known to be evaluated.
bool anyFailed(const std::vector<Row>& rows);

/// The categories and, below them, what was judged of the package as a whole; either may be empty.
std::string renderTable(const std::vector<Row>& rows, const std::vector<Check>& checks, bool coloured);

}  // namespace vxclone
