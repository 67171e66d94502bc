#pragma once

#include <vector>

#include "cloning_app/run/result_table.h"

namespace vxclone {

/// Says in the rows of the application category whose each one is. The library reports one outcome for each
/// application that it asked, without a name: first the orvel application, if that runs or could be started,
/// then the one that the settings name as the first screen, if they do.
void nameApplications(std::vector<Row>& rows);

}  // namespace vxclone
