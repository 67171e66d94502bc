#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "cloning_app/base/stop_flag.h"
#include "cloning_app/record/run_record.h"
#include "cloning_app/report/output.h"
#include "cloning_app/report/progress_view.h"

namespace vxclone {

/// What the television tells of its runs.
struct Status {
    /// Of the last restore; none while a run goes on, and where the settings store refuses it.
    std::optional<int> percent;
    std::vector<Row> reported;         ///< what the library's result list holds
    std::vector<std::string> unknown;  ///< its lines that are no outcome
    std::optional<LastRun> last;       ///< none where no run is recorded
    bool looking = false;              ///< a look at the television goes on, which changes nothing of it
};

/// Reads the two keys of the settings store, and the record in `folder`. A look at the television lets the
/// library write the keys: then they are read from where the look keeps them. Changes nothing. Errors: those
/// of `readLastRun`.
Result<Status> readStatus(const std::filesystem::path& folder);

/// What there is to say of the last run, for people: a sentence or more.
std::vector<std::string> sentencesOf(const Status& status);

/// All of it. The exit status is 1 when a run died before its end, or one that broke off left the television
/// changed.
Output outputOf(const Status& status);

/// Lets the end of a command that only looks name the last run where it died, and one that broke off and left
/// the television changed. A record that cannot be read is no matter of such a command.
void nameUnfinishedRun(Output& output, const std::filesystem::path& folder);

/// Shows the run that goes on until it has ended or `stop` is raised; where none goes on it ends at once.
/// Result: the status then. Errors: those of `readStatus`; a stop.
Result<Status> followRun(const std::filesystem::path& folder, ProgressView& view, const StopFlag& stop);

}  // namespace vxclone
