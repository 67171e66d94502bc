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

/// The result of a category.
enum class Verdict {
    Done,
    Failed,
    Differs,     ///< the library reported success, but the television does not hold what the package holds
    NotApplied,  ///< the same, and the television still holds what it held before
    Lacking,     ///< a complete package would hold it; the television keeps its own
    Planned,     ///< a dry run would load it
    NotEvaluated,
    NotReported,
    NotThere,  ///< there is nothing to clone, and that is correct
    NotInBackup,
    NotChosen,
    NotPossible
};

/// The result of comparing the package with a new backup of the television after a restore.
enum class ReadBack {
    None,     ///< it was not read back
    Same,     ///< the television holds what the package holds
    Differs,  ///< it does not
    Unknown   ///< it cannot be read back or compared
};

/// One line of the table at the end of a run.
struct Row {
    VXClone category;
    Verdict verdict;
    std::string detail = {};   ///< may be empty
    std::string subject = {};  ///< the application, if a category has several results; may be empty
    ReadBack readBack = ReadBack::None;
};

/// The verdict in JSON, in words, and its colour.
std::string_view nameOf(Verdict verdict);
std::size_t verdictCount();
/// The verdict with that name in JSON.
std::optional<Verdict> verdictNamed(std::string_view name);
std::string_view wordsOf(Verdict verdict);

/// The same for the read-back; both are empty for `None`.
std::string_view nameOf(ReadBack readBack);
std::string_view wordsOf(ReadBack readBack);
/// The read-back result with that name in JSON.
std::optional<ReadBack> readBackNamed(std::string_view name);

/// The colour of the row's result: Doubt if the result is unknown.
vxcommon::Colour colourOf(const Row& row);

/// The result of the row's category: the verdict in words, the read-back, and the detail.
std::string textOf(const Row& row);

/// Adds words to the row's detail.
void addDetail(Row& row, const std::string& detail);

/// The row for an outcome that the library reported.
Row rowOf(const Outcome& outcome, Direction direction);

/// The rows of all 15 categories in the library's order. A category that reported several times has several
/// rows. `own` contains vxclone's own results, which replace the library's.
std::vector<Row> tableRows(Direction direction, const std::vector<VXClone>& chosen,
                           const std::vector<Outcome>& outcomes, const std::vector<Row>& own);

/// Whether the category is known to be wrong.
bool isFailure(Verdict verdict);
/// Whether any row is a failure.
bool anyFailed(const std::vector<Row>& rows);

/// A table of the categories and, below them, of the checks of the whole package; either may be empty. Bad
/// results come first. Categories that were only not chosen are left to `notChosen`. `title` is the heading
/// of the results.
vxcommon::TerminalTable tableOf(const std::vector<Row>& rows, const std::vector<Check>& checks,
                                const std::string& title = "result");

/// The categories that were not chosen, in one line: "not chosen: av, timers". Empty if there are none.
std::string notChosen(const std::vector<Row>& rows);

/// The names of the failed categories, each once: "channels, apps".
std::string failedNames(const std::vector<Row>& rows);

/// The report's exit status for these rows and result lines.
int exitStatusFor(const std::vector<Row>& rows, const ResultList& results);

/// A sentence for each unknown line of the result list.
std::vector<std::string> unknownLineSentences(const ResultList& results);

}  // namespace vxclone
