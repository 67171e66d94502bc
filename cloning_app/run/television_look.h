#pragma once

#include <vector>

#include "cloning_app/report/comparison.h"
#include "cloning_app/run/clone_run.h"

namespace vxclone {

/// What a new backup shows of the television.
struct TelevisionLook {
    ComparedState state;
    std::vector<Row> rows;            ///< what was saved, of all categories, as after a backup
    std::vector<VXClone> unread;      ///< the categories that could not be saved
    std::vector<VXClone> unreported;  ///< those that the library should have reported, and did not
};

/// Lets the library save the television into the clone folder `root`, whose content it replaces, adds the
/// logos and reads what is there. The library's result list is afterwards as it was. The view of the context
/// follows. Errors: those of `saveTelevision`; a stop by the time that it is saved; what was saved cannot be
/// read.
Result<TelevisionLook> lookAtTelevision(const CloneContext& context, const Tree& root);

}  // namespace vxclone
