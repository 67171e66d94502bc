#pragma once

#include <functional>
#include <vector>

#include "cloning_app/report/result_table.h"

namespace vxclone {

/// Says in the rows of the application category whose each one is. The library reports one outcome for each
/// application that it asked, without a name: first the orvel application, if that runs or could be started,
/// then the one that the settings name as the first screen, if they do.
void nameApplications(std::vector<Row>& rows);

/// Whether an application that was not reported is known to have run, by `hasRun`, which gets its row: then
/// the library's list lost an outcome, and does not tell whose those are that it holds.
bool lostAnOutcome(const std::vector<Row>& rows, const std::function<bool(const Row&)>& hasRun);

/// Says of the row of an application that was not reported, and of which there is data all the same, that it
/// runs. Other rows stay as they are.
void sayThatItRuns(Row& row);

/// Takes back what the row of an application says was done, and says that the outcome may not be its own.
void doubt(Row& row);

}  // namespace vxclone
