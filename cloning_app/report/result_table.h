#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "cloning_app/report/finding.h"
#include "cloning_app/television/result_list.h"
#include "common/terminal_table.h"

namespace vxclone {

/// What became of a category.
enum class Verdict {
    Done,
    Failed,
    Differs,     ///< the library reported success, and the television does not hold what the package holds
    NotApplied,  ///< the same, and the television holds what it held before
    Lacking,     ///< the package should hold it and does not, so that the television keeps its own
    Planned,     ///< a dry run would load it
    NotEvaluated,
    NotReported,
    NotThere,  ///< nothing is there to be cloned, and that is as it should be
    NotInBackup,
    NotChosen,
    NotPossible
};

/// What was found when the television was backed up again after a restore and compared with the package.
enum class ReadBack {
    None,     ///< nobody looked
    Same,     ///< the television holds what the package holds
    Differs,  ///< it does not
    Unknown   ///< it cannot be read back, or not be compared
};

/// One line of the table at the end of a run.
struct Row {
    VXClone category;
    Verdict verdict;
    std::string detail = {};   ///< may be empty
    std::string subject = {};  ///< whose outcome it is, where a category has several; may be empty
    ReadBack readBack = ReadBack::None;
};

/// The verdict in JSON, for people, and its colour.
std::string_view nameOf(Verdict verdict);
std::size_t verdictCount();
/// The verdict of that name in JSON.
std::optional<Verdict> verdictNamed(std::string_view name);
std::string_view wordsOf(Verdict verdict);

/// The same of what was read back; both empty for `None`.
std::string_view nameOf(ReadBack readBack);
std::string_view wordsOf(ReadBack readBack);
/// The finding of that name in JSON.
std::optional<ReadBack> readBackNamed(std::string_view name);

/// The colour of what the row says: doubt where nobody knows whether it is as it should be.
vxcommon::Colour colourOf(const Row& row);

/// What the row says of its category: the verdict in words, what was read back, and the detail.
std::string textOf(const Row& row);

/// Adds to what the row says in words.
void addDetail(Row& row, const std::string& detail);

/// The row for an outcome that the library reported.
Row rowOf(const Outcome& outcome, Direction direction);

/// The rows of all 15 categories in the library's order; a category that reported several times has several.
/// `own` are vxclone's own findings, which stand in place of the library's.
std::vector<Row> tableRows(Direction direction, const std::vector<VXClone>& chosen,
                           const std::vector<Outcome>& outcomes, const std::vector<Row>& own);

/// Whether the category is not as it should be, and that is known.
bool isFailure(Verdict verdict);
/// Whether this is so of any row.
bool anyFailed(const std::vector<Row>& rows);

/// The categories and, below them, what was judged of the package as a whole; either may be empty. Of both,
/// what is not as it should be comes first. What was not chosen, for no other reason, is left to `notChosen`.
/// `title` stands above what became of them.
vxcommon::TerminalTable tableOf(const std::vector<Row>& rows, const std::vector<Check>& checks,
                                const std::string& title = "result");

/// The categories that were not chosen, in one line: "not chosen: av, timers"; empty where there are none.
std::string notChosen(const std::vector<Row>& rows);

/// The names of the failed categories, each once: "channels, apps".
std::string failedNames(const std::vector<Row>& rows);

/// The report's exit status for these rows and lines.
int exitStatusFor(const std::vector<Row>& rows, const ResultList& results);

/// A sentence for each line of the result list that vxclone does not know.
std::vector<std::string> unknownLineSentences(const ResultList& results);

}  // namespace vxclone
