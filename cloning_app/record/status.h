#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "cloning_app/base/stop_flag.h"
#include "cloning_app/record/run_record.h"
#include "cloning_app/report/output.h"
#include "cloning_app/report/progress_view.h"

namespace vxclone {

/// What the television reports about its runs.
struct Status {
    /// The percentage of the last restore. Empty during a run, or if the settings store refuses to read it.
    std::optional<int> percent;
    std::vector<Row> reported;         ///< what the library's result list holds
    std::vector<std::string> unknown;  ///< its lines that are not a result
    std::optional<LastRun> last;       ///< empty if no run is recorded
    bool looking = false;              ///< a command is looking at the television without changing it
};

/// Reads the two keys of the settings store, and the record in `folder`. During a look the library overwrites
/// the keys, so they are then read from the look's copy. Changes nothing. Errors: those of `readLastRun`.
Result<Status> readStatus(const std::filesystem::path& folder);

/// The description of the last run for people, in one or more sentences.
std::vector<std::string> sentencesOf(const Status& status);

/// The complete output. The exit status is 1 if a run died, or an interrupted one left the television
/// changed.
Output outputOf(const Status& status);

/// Adds a sentence to the output of a looking command if the last run died, or an interrupted one left the
/// television changed. A record that cannot be read is ignored here.
void nameUnfinishedRun(Output& output, const std::filesystem::path& folder);

/// Shows the current run until it has ended or `stop` is raised. Without a current run it returns at once.
/// Result: the status then. Errors: those of `readStatus`; a stop.
Result<Status> followRun(const std::filesystem::path& folder, ProgressView& view, const StopFlag& stop);

}  // namespace vxclone
